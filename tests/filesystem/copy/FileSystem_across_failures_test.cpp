// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "FileTree.h"
#include "InterruptedCopies.h"
#include "Privileges.h"
#include "TwoDisks.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <optional>
#include <thread>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Moves from one file system to another that fail or are cut short.
class FileSystem_across_failures_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase();

    void init() { m_disks.emplace(); }

    void cleanup() { m_disks.reset(); }

    void whatIsAtTheDestinationIsNeverOverwritten_data();
    void whatIsAtTheDestinationIsNeverOverwritten();
    void aFullDiskLeavesTheSourceWholeAndNothingElse_data();
    void aFullDiskLeavesTheSourceWholeAndNothingElse();
    void aSourceThatMayNotBeRemovedIsNotCopied_data();
    void aSourceThatMayNotBeRemovedIsNotCopied();
    void aFileThatIsWrittenMeanwhileIsNeverLost();
    void aFolderIsNotCopiedIntoItselfThroughAnotherMount();
    void interruptedCopiesAreRemovedAndNothingElse();

private:
    std::optional<TwoDisks> m_disks;
};

void FileSystem_across_failures_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileSystem_across_failures_test::whatIsAtTheDestinationIsNeverOverwritten_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("taken");
    for (const QString& source : {u"file"_s, u"folder"_s, u"link"_s}) {
        for (const QString& taken : {u"file"_s, u"folder"_s, u"dangling link"_s}) {
            QTest::addRow("a %s onto a %s", qPrintable(source), qPrintable(taken)) << source << taken;
        }
    }
}

void FileSystem_across_failures_test::whatIsAtTheDestinationIsNeverOverwritten()
{
    QFETCH(QString, source);
    QFETCH(QString, taken);
    m_disks->home.makeFile(u"file"_s, "the file to move\n");
    m_disks->home.makeFile(u"folder/inside"_s, "the folder to move\n");
    QVERIFY(QFile::link(u"file"_s, m_disks->home.path(u"link"_s)));
    m_disks->home.makeFile(u"other/file"_s, "there before\n");
    m_disks->home.makeFolder(u"other/folder"_s);
    QVERIFY(QFile::link(u"nowhere"_s, m_disks->there(u"dangling link"_s)));
    const auto before = treeAt(m_disks->home.path({}));

    QCOMPARE(TwoDisks::move(m_disks->home.path(source), m_disks->there(taken)), EEXIST);

    QCOMPARE(treeAt(m_disks->home.path({})), before);
}

void FileSystem_across_failures_test::aFullDiskLeavesTheSourceWholeAndNothingElse_data()
{
    QTest::addColumn<bool>("folder");
    QTest::newRow("a file") << false;
    QTest::newRow("a folder") << true;
}

void FileSystem_across_failures_test::aFullDiskLeavesTheSourceWholeAndNothingElse()
{
    QFETCH(bool, folder);
    m_disks->mounts.mountTemporary(m_disks->home.path(u"small"_s), "size=256k");
    m_disks->home.makeFile(u"folder/one"_s, QByteArray(100'000, '1'));
    m_disks->home.makeFile(u"folder/two/three"_s, QByteArray(400'000, '2'));
    const QString from = m_disks->home.path(folder ? u"folder"_s : u"folder/two/three"_s);
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->home.path(u"small/copy"_s)), ENOSPC);

    QCOMPARE(treeAt(from), before);
    QVERIFY(rawNames(m_disks->home.path(u"small"_s)).isEmpty());
}

void FileSystem_across_failures_test::aSourceThatMayNotBeRemovedIsNotCopied_data()
{
    QTest::addColumn<QString>("withoutRight");
    QTest::addColumn<uint>("mode");
    QTest::addColumn<QString>("source");
    QTest::newRow("file in a folder without write right") << u"mine"_s << 0555U << u"mine/folder/file"_s;
    QTest::newRow("folder in a folder without write right") << u"mine"_s << 0555U << u"mine/folder"_s;
    QTest::newRow("folder with a subfolder without write right") << u"mine/folder/sub"_s << 0555U << u"mine/folder"_s;
    QTest::newRow("file that cannot be read") << u"mine/folder/file"_s << 0U << u"mine/folder/file"_s;
    QTest::newRow("folder with a file that cannot be read") << u"mine/folder/file"_s << 0U << u"mine/folder"_s;
}

void FileSystem_across_failures_test::aSourceThatMayNotBeRemovedIsNotCopied()
{
    QFETCH(QString, withoutRight);
    QFETCH(uint, mode);
    QFETCH(QString, source);
    m_disks->home.makeFile(u"mine/folder/file"_s);
    m_disks->home.makeFile(u"mine/folder/sub/inside"_s);
    m_disks->home.makeFolder(u"other/mine"_s);
    for (const QString& path : {u"."_s, u"mine"_s, u"mine/folder"_s, u"mine/folder/sub"_s, u"mine/folder/file"_s,
                                u"mine/folder/sub/inside"_s, u"other/mine"_s}) {
        giveToOrdinaryUser(m_disks->home.path(path));
    }
    const QString locked = withoutRight == u"mine"_s && source.endsWith(u"file"_s) ? u"mine/folder"_s : withoutRight;
    QCOMPARE(::chmod(m_disks->home.path(locked).toUtf8().constData(), mode), 0);
    const auto before = treeAt(m_disks->home.path(u"mine"_s));

    const int error =
        asOrdinaryUser([&] { return TwoDisks::move(m_disks->home.path(source), m_disks->there(u"mine/copy"_s)); });

    QCOMPARE(error, EACCES);
    QCOMPARE(treeAt(m_disks->home.path(u"mine"_s)), before);
    QVERIFY(rawNames(m_disks->there(u"mine"_s)).isEmpty());
}

void FileSystem_across_failures_test::aFileThatIsWrittenMeanwhileIsNeverLost()
{
    // Each round opens the file again and again while it is moved, and appends to it: whatever the move says, every
    // byte written is found afterwards at one of the two places.
    for (int round = 0; round < 40; ++round) {
        const QString name = u"file %1"_s.arg(round);
        const QString from = m_disks->home.makeFile(name, QByteArray(200'000, 'a'));
        const QByteArray path = from.toUtf8();
        std::atomic<bool> stop = false;
        std::atomic<qint64> written = 200'000;
        std::thread writer([&] {
            for (int i = 0; i < round * 4 && !stop; ++i) {
                const int file = ::open(path.constData(), O_WRONLY | O_APPEND);
                written += file < 0 ? 0 : ::write(file, "more", 4);
                ::close(file);
            }
        });

        const int error = TwoDisks::move(from, m_disks->there(name));

        stop = true;
        writer.join();
        struct stat found = {};
        QVERIFY(error == 0 || error == ETXTBSY);
        QCOMPARE(fileSystem::exists(m_disks->there(name)), error == 0);
        QCOMPARE(fileSystem::exists(from), error != 0);
        QCOMPARE(::stat(error == 0 ? m_disks->there(name).toUtf8().constData() : path.constData(), &found), 0);
        QCOMPARE(found.st_size, written.load());
    }
    for (const QByteArray& name : rawNames(m_disks->there({}))) {
        QVERIFY(!name.startsWith('.'));
    }
}

void FileSystem_across_failures_test::aFolderIsNotCopiedIntoItselfThroughAnotherMount()
{
    const QString from = m_disks->home.makeFolder(u"folder"_s);
    m_disks->home.makeFile(u"folder/inside/file"_s);
    const QString mirror = m_disks->home.makeFolder(u"mirror"_s);
    m_disks->mounts.bind(from, mirror);
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, mirror + u"/inside/copy"_s), EINVAL);

    QCOMPARE(treeAt(from).size(), before.size());
    QCOMPARE(rawNames(from + u"/inside"_s), QList<QByteArray>{"file"});
}

void FileSystem_across_failures_test::interruptedCopiesAreRemovedAndNothingElse()
{
    const QString leftFolder = m_disks->home.makeFolder(u"r/.lapsa-copy-0123456789abcdef"_s);
    m_disks->home.makeFile(u"r/.lapsa-copy-0123456789abcdef/sub/file"_s);
    const QString leftFile = m_disks->home.makeFile(u"r/.lapsa-copy-00000000000000aa"_s);
    for (const QString& path : {leftFolder, leftFile}) {
        QCOMPARE(::chmod(path.toUtf8().constData(), 01700), 0);
    }
    m_disks->home.makeFile(u"r/.lapsa-copy-1111111111111111"_s); // another mode
    const QString otherName = m_disks->home.makeFolder(u"r/.lapsa-copy-0123456789abcdeg"_s);
    const QString othersFolder = m_disks->home.makeFolder(u"r/.lapsa-copy-2222222222222222"_s);
    QVERIFY(QFile::link(otherName, m_disks->home.path(u"r/.lapsa-copy-3333333333333333"_s)));
    for (const QString& path : {otherName, othersFolder}) {
        QCOMPARE(::chmod(path.toUtf8().constData(), 01700), 0);
    }
    giveToOrdinaryUser(othersFolder);

    fileSystem::removeInterruptedCopies(m_disks->home.path(u"r"_s));

    const QList<QByteArray> kept = {".lapsa-copy-0123456789abcdeg", ".lapsa-copy-1111111111111111",
                                    ".lapsa-copy-2222222222222222", ".lapsa-copy-3333333333333333"};
    QCOMPARE(rawNames(m_disks->home.path(u"r"_s)), kept);
}

QTEST_GUILESS_MAIN(FileSystem_across_failures_test)
#include "FileSystem_across_failures_test.moc"
