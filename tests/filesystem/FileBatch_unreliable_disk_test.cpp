// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "InterruptedCopies.h"
#include "SteeredDisk.h"
#include "StepWatcher.h"
#include "TemporaryHome.h"

#include <QTest>

#include <cerrno>
#include <memory>
#include <optional>
#include <thread>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr qint64 megabyte = 1 << 20;

int errorOf(const Result<void>& result)
{
    return result ? 0 : result.error().code;
}

} // namespace

/// Moves and removals on a disk that is slow, loses its answers, stops answering or dies.
class FileBatch_unreliable_disk_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aSlowDiskOnlyTakesLonger_data();
    void aSlowDiskOnlyTakesLonger();
    void whereAnswersGetLostNothingElseDoes_data();
    void whereAnswersGetLostNothingElseDoes();
    void whatIsRemovedWithoutAnAnswerIsGone();
    void aLostAnswerLeavesTheTrashConsistent_data();
    void aLostAnswerLeavesTheTrashConsistent();
    void aSlowCopyIsStoppedInTheMiddle_data();
    void aSlowCopyIsStoppedInTheMiddle();
    void aDiskThatDiesDuringTheCopyCostsNothing_data();
    void aDiskThatDiesDuringTheCopyCostsNothing();
    void aDiskThatAnswersAgainGoesOn();
    void oneEntryThatDoesNotAnswerHoldsUpNoOther();

private:
    static void addWays();
    [[nodiscard]] int move(const QString& from, const QString& to, fileSystem::WorkObserver* observer = nullptr) const;
    void makeTree(const QString& folder) const;

    std::unique_ptr<TemporaryHome> m_home;
    std::optional<SteeredDisk> m_disk;
};

void FileBatch_unreliable_disk_test::initTestCase()
{
    if (!SteeredDisk::available()) {
        QSKIP("no steered disk");
    }
}

// disk/ shows behind/.
void FileBatch_unreliable_disk_test::init()
{
    m_home = std::make_unique<TemporaryHome>();
    m_disk.emplace(m_home->path(u"behind"_s), m_home->path(u"disk"_s));
}

void FileBatch_unreliable_disk_test::cleanup()
{
    m_disk.reset();
    m_home.reset();
}

int FileBatch_unreliable_disk_test::move(const QString& from, const QString& to,
                                         fileSystem::WorkObserver* observer) const
{
    fileSystem::Batch batch({});
    batch.observe(observer);
    return errorOf(batch.move(m_home->path(from), m_home->path(to)));
}

void FileBatch_unreliable_disk_test::makeTree(const QString& folder) const
{
    m_home->makeFile(folder + u"/one"_s, QByteArray(2 * megabyte, 'a'));
    m_home->makeFile(folder + u"/sub/two"_s, QByteArray(1000, 'b'));
    m_home->makeFile(folder + u"/sub/deep/three"_s);
}

void FileBatch_unreliable_disk_test::addWays()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::newRow("a file to the disk") << u"tree/one"_s << u"disk/moved"_s;
    QTest::newRow("a folder to the disk") << u"tree"_s << u"disk/moved"_s;
    QTest::newRow("a file from the disk") << u"disk/tree/one"_s << u"moved"_s;
    QTest::newRow("a folder from the disk") << u"disk/tree"_s << u"moved"_s;
    QTest::newRow("a file on the disk") << u"disk/tree/one"_s << u"disk/moved"_s;
    QTest::newRow("a folder on the disk") << u"disk/tree"_s << u"disk/moved"_s;
}

void FileBatch_unreliable_disk_test::aSlowDiskOnlyTakesLonger_data()
{
    addWays();
}

void FileBatch_unreliable_disk_test::aSlowDiskOnlyTakesLonger()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    makeTree(u"tree"_s);
    makeTree(u"behind/tree"_s);
    const auto before = treeAt(m_home->path(from));

    m_disk->answerAfter(1ms);

    QCOMPARE(move(from, to), 0);
    QCOMPARE(treeAt(m_home->path(to)), before);
    QVERIFY(!fileSystem::exists(m_home->path(from)));
}

void FileBatch_unreliable_disk_test::whereAnswersGetLostNothingElseDoes_data()
{
    addWays();
}

void FileBatch_unreliable_disk_test::whereAnswersGetLostNothingElseDoes()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    for (const int lost : {EIO, ENOENT, ETIMEDOUT}) {
        makeTree(u"tree"_s);
        makeTree(u"behind/tree"_s);
        const auto before = treeAt(m_home->path(from));

        m_disk->loseAnswers(lost);
        const int error = move(from, to);
        m_disk->loseAnswers(0);

        // One of the two places has all of it, as the result says.
        QCOMPARE(treeAt(m_home->path(error == 0 ? to : from)), before);
        QVERIFY(error == 0 || !fileSystem::exists(m_home->path(to)));
        // What is left of a copy is known, and not needed.
        fileSystem::removeInterruptedCopies(m_home->path(u"disk"_s));
        fileSystem::removeInterruptedCopies(m_home->path({}));
        std::ignore = fileSystem::Batch({}).remove(m_home->path(error == 0 ? to : from));
        QVERIFY(!m_home->names(u"disk"_s).join(u' ').contains(u"lapsa-copy"_s));
    }
}

void FileBatch_unreliable_disk_test::whatIsRemovedWithoutAnAnswerIsGone()
{
    makeTree(u"behind/tree"_s);
    fileSystem::Batch batch({});

    m_disk->loseAnswers(EIO);
    std::ignore = batch.remove(m_home->path(u"disk/tree"_s));
    m_disk->loseAnswers(0);

    // It may report the lost answers, but has gone on behind each of them.
    QVERIFY(!fileSystem::exists(m_home->path(u"behind/tree/one"_s)));
    QVERIFY(!fileSystem::exists(m_home->path(u"behind/tree/sub/deep/three"_s)));
}

void FileBatch_unreliable_disk_test::aLostAnswerLeavesTheTrashConsistent_data()
{
    QTest::addColumn<int>("lost");
    QTest::newRow("told as a broken disk") << EIO;
    QTest::newRow("told as a missing file") << ENOENT;
}

void FileBatch_unreliable_disk_test::aLostAnswerLeavesTheTrashConsistent()
{
    QFETCH(const int, lost);
    const QString path = m_home->makeFile(u"behind/first"_s);
    fileSystem::Batch batch({});
    // Makes the trash of the disk, which needs true answers.
    QVERIFY(batch.moveToTrash(m_home->path(u"disk/first"_s)));
    m_home->makeFile(u"behind/second"_s);

    m_disk->loseAnswers(lost);
    const int error = errorOf(batch.moveToTrash(m_home->path(u"disk/second"_s)));
    m_disk->loseAnswers(0);

    const QString trash = u"behind/.Trash-0"_s;
    const bool isThere = m_home->names(trash + u"/files"_s).contains(u"second"_s);
    QCOMPARE(isThere, error == 0);
    QCOMPARE(fileSystem::exists(m_home->path(u"behind/second"_s)), !isThere);
    QCOMPARE(m_home->names(trash + u"/info"_s).contains(u"second.trashinfo"_s), isThere);
}

void FileBatch_unreliable_disk_test::aSlowCopyIsStoppedInTheMiddle_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::newRow("a file to the disk") << u"tree/one"_s << u"disk/moved"_s;
    QTest::newRow("a folder to the disk") << u"tree"_s << u"disk/moved"_s;
    QTest::newRow("a file from the disk") << u"disk/tree/one"_s << u"to/moved"_s;
    QTest::newRow("a folder from the disk") << u"disk/tree"_s << u"to/moved"_s;
}

void FileBatch_unreliable_disk_test::aSlowCopyIsStoppedInTheMiddle()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    makeTree(u"tree"_s);
    makeTree(u"behind/tree"_s);
    m_home->makeFolder(u"to"_s);
    const auto before = treeAt(m_home->path(from));
    const QStringList names = m_home->names(to.section(u'/', 0, 0));
    StepWatcher observer([](std::int64_t bytes) { return bytes > megabyte; });

    m_disk->answerAfter(2ms);
    const int error = move(from, to, &observer);

    QCOMPARE(error, ECANCELED);
    QCOMPARE(treeAt(m_home->path(from)), before);
    QCOMPARE(m_home->names(to.section(u'/', 0, 0)), names);
}

void FileBatch_unreliable_disk_test::aDiskThatDiesDuringTheCopyCostsNothing_data()
{
    aSlowCopyIsStoppedInTheMiddle_data();
}

void FileBatch_unreliable_disk_test::aDiskThatDiesDuringTheCopyCostsNothing()
{
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    makeTree(u"tree"_s);
    makeTree(u"behind/tree"_s);
    m_home->makeFolder(u"to"_s);
    const auto before = treeAt(m_home->path(u"tree"_s));
    const auto behind = treeAt(m_home->path(u"behind/tree"_s));
    StepWatcher observer([&](std::int64_t bytes) {
        if (bytes > megabyte) {
            m_disk->die();
        }
        return false;
    });

    QVERIFY(move(from, to, &observer) != 0);

    QCOMPARE(treeAt(m_home->path(u"tree"_s)), before);
    QCOMPARE(treeAt(m_home->path(u"behind/tree"_s)), behind);
    QVERIFY(m_home->names(u"to"_s).isEmpty());
    // What is left behind the dead disk is known as such when it is back.
    fileSystem::removeInterruptedCopies(m_home->path(u"behind"_s));
    QCOMPARE(m_home->names(u"behind"_s), QStringList{u"tree"_s});
}

void FileBatch_unreliable_disk_test::aDiskThatAnswersAgainGoesOn()
{
    makeTree(u"tree"_s);
    const auto before = treeAt(m_home->path(u"tree"_s));
    m_disk->stopAnswering();
    int error = -1;
    std::thread moving([&] { error = move(u"tree"_s, u"disk/moved"_s); });

    m_disk->awaitStoppedCall();
    m_disk->answerAgain();
    moving.join();

    QCOMPARE(error, 0);
    QCOMPARE(treeAt(m_home->path(u"disk/moved"_s)), before);
}

void FileBatch_unreliable_disk_test::oneEntryThatDoesNotAnswerHoldsUpNoOther()
{
    makeTree(u"behind/first/dead"_s);
    makeTree(u"behind/second/tree"_s);
    m_disk->stopAnsweringOn(u"first/dead"_s);
    int error = -1;
    std::thread moving([&] { error = move(u"disk/first/dead"_s, u"disk/first/moved"_s); });
    m_disk->awaitStoppedCall();

    QCOMPARE(move(u"disk/second/tree"_s, u"disk/second/moved"_s), 0);

    m_disk->answerAgain();
    moving.join();
    QCOMPARE(error, 0);
}

QTEST_GUILESS_MAIN(FileBatch_unreliable_disk_test)
#include "FileBatch_unreliable_disk_test.moc"
