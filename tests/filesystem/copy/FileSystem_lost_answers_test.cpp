// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "InterruptedCopies.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QTest>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

namespace {

/// What happens to the calls below, which stand in the place of the system's.
enum class Answers
{
    True,
    /// Removals, links and renamings happen and are reported as failed, as over a network that loses the answer.
    Lost,
    /// The same on a file system that cannot rename without replacing.
    LostWithoutRenaming,
    /// No removal and no change of a mode any more.
    Refused,
    /// No removal any more on a file system that cannot rename without replacing.
    RefusedWithoutRenaming,
};

Answers answers = Answers::True;

int answered(long result)
{
    if (result == 0 && (answers == Answers::Lost || answers == Answers::LostWithoutRenaming)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(result);
}

int refused(int error)
{
    errno = error;
    return -1;
}

} // namespace

extern "C" int unlinkat(int folder, const char* name, int flags) noexcept
{
    const bool isRefused = answers == Answers::Refused || answers == Answers::RefusedWithoutRenaming;
    return isRefused ? refused(EIO) : answered(::syscall(SYS_unlinkat, folder, name, flags));
}

extern "C" int fchmod(int file, mode_t mode) noexcept
{
    return answers == Answers::Refused ? refused(EIO) : static_cast<int>(::syscall(SYS_fchmod, file, mode));
}

extern "C" int linkat(int from, const char* fromName, int to, const char* toName, int flags) noexcept
{
    return answered(::syscall(SYS_linkat, from, fromName, to, toName, flags));
}

extern "C" int renameat2(int from, const char* fromName, int to, const char* toName, unsigned flags) noexcept
{
    return answers == Answers::LostWithoutRenaming || answers == Answers::RefusedWithoutRenaming
               ? refused(EINVAL)
               : answered(::syscall(SYS_renameat2, from, fromName, to, toName, flags));
}

/// Calls that are carried out and reported as failed, and others that fail from one moment on.
class FileSystem_lost_answers_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup();

    void aMovedFileIsKept_data();
    void aMovedFileIsKept();
    void aFileMovedToAnotherFileSystemIsKept_data();
    void aFileMovedToAnotherFileSystemIsKept();
    void aFileInTheTrashKeepsItsRecord();
    void aFileThatKeepsBothNamesIsTold();
    void aSecondTryTakesTheNameThatIsLeftOfAFileInTheTrash();
    void anotherFileInTheTrashDoesNotEndTheFirstTry();
    void whatIsLeftOfACopyIsKnownFromItsFirstMomentOn();

private:
    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PrivateMounts> m_mounts;
};

void FileSystem_lost_answers_test::cleanup()
{
    answers = Answers::True;
    m_mounts.reset();
    m_home.reset();
}

void FileSystem_lost_answers_test::aMovedFileIsKept_data()
{
    QTest::addColumn<Answers>("given");
    QTest::newRow("renamed") << Answers::Lost;
    QTest::newRow("given a second name, then the first one removed") << Answers::LostWithoutRenaming;
}

void FileSystem_lost_answers_test::aMovedFileIsKept()
{
    QFETCH(const Answers, given);
    const QString from = m_home->makeFile(u"a.txt"_s);
    const auto before = treeAt(from);

    answers = given;
    const Result<void> moved = fileSystem::Batch({}).move(from, m_home->path(u"b.txt"_s));

    QVERIFY(moved);
    QCOMPARE(treeAt(m_home->path(u"b.txt"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
}

void FileSystem_lost_answers_test::aFileMovedToAnotherFileSystemIsKept_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a file") << u"a.txt"_s;
    QTest::newRow("a folder") << u"folder"_s;
}

void FileSystem_lost_answers_test::aFileMovedToAnotherFileSystemIsKept()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for this test, which needs root");
    }
    QFETCH(const QString, name);
    m_mounts = std::make_unique<PrivateMounts>();
    m_mounts->mountTemporary(m_home->path(u"other"_s));
    m_home->makeFile(u"a.txt"_s);
    m_home->makeFile(u"folder/file"_s);
    const auto before = treeAt(m_home->path(name));

    answers = Answers::Lost;
    const Result<void> moved = fileSystem::Batch({}).move(m_home->path(name), m_home->path(u"other/b"_s));

    QVERIFY(moved);
    QCOMPARE(treeAt(m_home->path(u"other/b"_s)), before);
    QCOMPARE(rawNames(m_home->path(u"other"_s)), QList<QByteArray>{"b"});
}

void FileSystem_lost_answers_test::aFileInTheTrashKeepsItsRecord()
{
    const QString path = m_home->makeFile(u"a.txt"_s);

    answers = Answers::Lost;
    const Result<void> moved = fileSystem::Batch({}).moveToTrash(path);

    QVERIFY(moved);
    QCOMPARE(m_home->names(u".local/share/Trash/files"_s), QStringList{u"a.txt"_s});
    QCOMPARE(m_home->names(u".local/share/Trash/info"_s), QStringList{u"a.txt.trashinfo"_s});
}

void FileSystem_lost_answers_test::aFileThatKeepsBothNamesIsTold()
{
    const QString from = m_home->makeFile(u"a.txt"_s);

    answers = Answers::RefusedWithoutRenaming;
    const Result<void> moved = fileSystem::Batch({}).move(from, m_home->path(u"b.txt"_s));

    QVERIFY(!moved);
    QCOMPARE(moved.error().code, EINPROGRESS);
    QCOMPARE(treeAt(m_home->path(u"b.txt"_s)), treeAt(from));
}

void FileSystem_lost_answers_test::aSecondTryTakesTheNameThatIsLeftOfAFileInTheTrash()
{
    const QString path = m_home->makeFile(u"a.txt"_s);

    answers = Answers::RefusedWithoutRenaming;
    const Result<void> first = fileSystem::Batch({}).moveToTrash(path);
    answers = Answers::True;
    const Result<void> second = fileSystem::Batch({}).moveToTrash(path);

    QVERIFY(!first);
    QCOMPARE(first.error().code, EINPROGRESS);
    QVERIFY(second);
    QVERIFY(treeAt(path).isEmpty());
    QCOMPARE(m_home->names(u".local/share/Trash/files"_s), QStringList{u"a.txt"_s});
    QCOMPARE(m_home->names(u".local/share/Trash/info"_s), QStringList{u"a.txt.trashinfo"_s});
}

void FileSystem_lost_answers_test::anotherFileInTheTrashDoesNotEndTheFirstTry()
{
    const QString path = m_home->makeFile(u"a.txt"_s);
    const QString elsewhere = m_home->makeFile(u"elsewhere/a.txt"_s, "another");
    const QString secondName = m_home->path(u"second name"_s);
    QCOMPARE(::link(path.toUtf8().constData(), secondName.toUtf8().constData()), 0);

    fileSystem::Batch batch({});
    QVERIFY(batch.moveToTrash(elsewhere));
    QVERIFY(batch.moveToTrash(secondName));
    QVERIFY(batch.moveToTrash(path));

    QCOMPARE(m_home->names(u".local/share/Trash/files"_s), (QStringList{u"a.2.txt"_s, u"a.txt"_s, u"second name"_s}));
}

void FileSystem_lost_answers_test::whatIsLeftOfACopyIsKnownFromItsFirstMomentOn()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for this test, which needs root");
    }
    m_mounts = std::make_unique<PrivateMounts>();
    m_mounts->mountTemporary(m_home->path(u"other"_s));
    const QString from = m_home->path(u"folder"_s);
    m_home->makeFile(u"folder/file"_s);
    const auto before = treeAt(from);

    answers = Answers::Refused;
    const Result<void> moved = fileSystem::Batch({}).move(from, m_home->path(u"other/b"_s));
    answers = Answers::True;

    QVERIFY(!moved);
    QCOMPARE(treeAt(from), before);
    QCOMPARE(rawNames(m_home->path(u"other"_s)).size(), 1);
    fileSystem::removeInterruptedCopies(m_home->path(u"other"_s));
    QVERIFY(rawNames(m_home->path(u"other"_s)).isEmpty());
}

QTEST_GUILESS_MAIN(FileSystem_lost_answers_test)

#include "FileSystem_lost_answers_test.moc"
