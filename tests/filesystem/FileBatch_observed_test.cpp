// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TemporaryHome.h"
#include "WorkObserver.h"

#include <QFile>
#include <QTest>

#include <unistd.h>

#include <cerrno>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

namespace {

/// Notes what it is told, and asks for an end when `wantsStop` says so.
class Watcher final : public fileSystem::WorkObserver
{
public:
    void copied(std::int64_t bytes, std::int64_t total) override { copies.emplace_back(bytes, total); }

    void removed(std::int64_t entries) override { removals.push_back(entries); }

    [[nodiscard]] bool stopRequested() const override
    {
        ++questions;
        return wantsStop && wantsStop();
    }

    std::vector<std::pair<std::int64_t, std::int64_t>> copies;
    std::vector<std::int64_t> removals;
    mutable int questions = 0;
    std::function<bool()> wantsStop;
};

int errorOf(const Result<void>& result)
{
    return result ? 0 : result.error().code;
}

constexpr qint64 megabyte = 1 << 20;

} // namespace

/// What a watcher hears of long work, and what is left when it ends the work.
class FileBatch_observed_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aCopyTellsHowFarItIs();
    void theHolesOfAFileCountAsWell();
    void aFolderIsMeasuredBeforeItIsCopied();
    void aStoppedCopyLeavesNothing_data();
    void aStoppedCopyLeavesNothing();
    void onceTheOriginalsGoNothingStopsIt();
    void theOriginalsGoWithSignsOfLife();
    void aRenamingIsNotStopped();
    void aRemovalTellsHowManyAreGone();
    void aStoppedRemovalLeavesTheRest();

private:
    [[nodiscard]] int move(const QString& name)
    {
        fileSystem::Batch batch({});
        batch.observe(&*m_watcher);
        return errorOf(batch.move(m_home->path(name), there(u"copy"_s)));
    }

    [[nodiscard]] int remove(const QString& name)
    {
        fileSystem::Batch batch({});
        batch.observe(&*m_watcher);
        return errorOf(batch.remove(m_home->path(name)));
    }

    /// 7 files and 3 folders.
    void makeTree() const;

    [[nodiscard]] QString there(const QString& name) const { return m_home->path(u"other/"_s + name); }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PrivateMounts> m_mounts;
    std::optional<Watcher> m_watcher;
};

void FileBatch_observed_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileBatch_observed_test::init()
{
    m_watcher.emplace();
    m_home = std::make_unique<TemporaryHome>();
    m_mounts = std::make_unique<PrivateMounts>();
    m_mounts->mountTemporary(m_home->path(u"other"_s), "size=256m");
}

void FileBatch_observed_test::cleanup()
{
    m_mounts.reset();
    m_home.reset();
}

void FileBatch_observed_test::makeTree() const
{
    m_home->makeFile(u"folder/one"_s, QByteArray(1000, 'a'));
    m_home->makeFile(u"folder/sub/two"_s, QByteArray(3 * megabyte, 'b'));
    m_home->makeFile(u"folder/sub/deep/three"_s, QByteArray(20, 'c'));
    m_home->makeFile(u"folder/sub/deep/four"_s, QByteArray());
    const QByteArray folder = m_home->path(u"folder"_s).toUtf8();
    QCOMPARE(::link((folder + "/sub/two").constData(), (folder + "/two again").constData()), 0);
    QCOMPARE(::symlink("sub/two", (folder + "/link").constData()), 0);
    QCOMPARE(::symlink("nowhere", (folder + "/sub/dangling").constData()), 0);
}

void FileBatch_observed_test::aCopyTellsHowFarItIs()
{
    constexpr qint64 size = 100 * megabyte;
    m_home->makeFile(u"file"_s, QByteArray(size, 'x'));

    QCOMPARE(move(u"file"_s), 0);

    std::int64_t last = 0;
    for (const auto& [bytes, total] : m_watcher->copies) {
        QCOMPARE(total, size);
        QVERIFY(bytes >= last && bytes - last <= 16 * megabyte);
        last = bytes;
    }
    QCOMPARE(last, size);
}

void FileBatch_observed_test::theHolesOfAFileCountAsWell()
{
    constexpr qint64 size = 100 * megabyte;
    QFile file(m_home->makeFile(u"file"_s, "head"));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(size) && file.seek(50 * megabyte));
    QCOMPARE(file.write("middle"), 6);
    file.close();

    QCOMPARE(move(u"file"_s), 0);

    QVERIFY(!m_watcher->copies.empty());
    QCOMPARE(m_watcher->copies.back(), (std::pair<std::int64_t, std::int64_t>(size, size)));
}

void FileBatch_observed_test::aFolderIsMeasuredBeforeItIsCopied()
{
    makeTree();
    constexpr std::int64_t size = 3 * megabyte + 1020;

    QCOMPARE(move(u"folder"_s), 0);

    for (const auto& [bytes, total] : m_watcher->copies) {
        QVERIFY(bytes <= total);
        QVERIFY(total == size || (total == 0 && bytes == 0));
    }
    QVERIFY(!m_watcher->copies.empty());
    QCOMPARE(m_watcher->copies.back(), (std::pair<std::int64_t, std::int64_t>(size, size)));
}

void FileBatch_observed_test::aStoppedCopyLeavesNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("least");
    QTest::newRow("a file") << u"folder/sub/two"_s << 4;
    QTest::newRow("a folder") << u"folder"_s << 25;
}

void FileBatch_observed_test::aStoppedCopyLeavesNothing()
{
    QFETCH(const QString, name);
    QFETCH(const int, least);
    makeTree();
    const auto before = treeAt(m_home->path(name));

    // At the first moment, the second one and so on, until it is too late.
    int moments = 0;
    int error = ECANCELED;
    for (; error == ECANCELED; ++moments) {
        m_watcher->questions = 0;
        m_watcher->wantsStop = [&] { return m_watcher->questions > moments; };
        error = move(name);
        if (error == ECANCELED) {
            QCOMPARE(treeAt(m_home->path(name)), before);
            QVERIFY(rawNames(there({})).isEmpty());
        }
    }

    QCOMPARE(error, 0);
    QVERIFY(moments > least);
    QCOMPARE(treeAt(there(u"copy"_s)).size(), before.size());
    QVERIFY(!fileSystem::exists(m_home->path(name)));
}

void FileBatch_observed_test::onceTheOriginalsGoNothingStopsIt()
{
    makeTree();
    m_watcher->wantsStop = [&] { return fileSystem::exists(there(u"copy"_s)); };

    QCOMPARE(move(u"folder"_s), 0);

    QVERIFY(!fileSystem::exists(m_home->path(u"folder"_s)));
}

void FileBatch_observed_test::theOriginalsGoWithSignsOfLife()
{
    for (int i = 0; i < 100; ++i) {
        m_home->makeFile(u"folder/"_s + QString::number(i));
    }
    m_watcher->wantsStop = [&] {
        if (!fileSystem::exists(there(u"copy"_s))) {
            m_watcher->copies.clear();
        }
        return false;
    };

    QCOMPARE(move(u"folder"_s), 0);

    QVERIFY(m_watcher->copies.size() >= 100);
}

void FileBatch_observed_test::aRenamingIsNotStopped()
{
    makeTree();
    m_watcher->wantsStop = [] { return true; };
    fileSystem::Batch batch({});
    batch.observe(&*m_watcher);

    QCOMPARE(errorOf(batch.move(m_home->path(u"folder"_s), m_home->path(u"renamed"_s))), 0);
}

void FileBatch_observed_test::aRemovalTellsHowManyAreGone()
{
    makeTree();

    QCOMPARE(remove(u"folder"_s), 0);

    std::int64_t last = 0;
    for (const std::int64_t entries : m_watcher->removals) {
        QVERIFY(entries == last || entries == last + 1);
        last = entries;
    }
    QCOMPARE(last, 10);
}

void FileBatch_observed_test::aStoppedRemovalLeavesTheRest()
{
    makeTree();
    qsizetype left = treeAt(m_home->path(u"folder"_s)).size();

    int error = ECANCELED;
    while (error == ECANCELED) {
        // After the first entry that is gone.
        m_watcher->removals.clear();
        m_watcher->wantsStop = [&] { return !m_watcher->removals.empty() && m_watcher->removals.back() > 0; };
        error = remove(u"folder"_s);
        --left;
        QCOMPARE(treeAt(m_home->path(u"folder"_s)).size(), left);
    }

    QCOMPARE(error, 0);
    QCOMPARE(left, 0);
}

QTEST_GUILESS_MAIN(FileBatch_observed_test)
#include "FileBatch_observed_test.moc"
