// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "InterruptedCopies.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <thread>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Moves from one file system to another.
class FileSystem_across_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void aFileKeepsContentModeTimesAndAttributes();
    void aSparseFileStaysSparse();
    void aLinkStaysALink_data();
    void aLinkStaysALink();
    void aPipeStaysAPipe();
    void aFolderArrivesAsItWas();
    void namesThatAreNoTextSurviveInsideAFolder();
    void aFolderOfMoreLevelsThanDescriptorsArrives();
    void aDeepFolderTakesNoMoreMemoryThanItHasFolders();
    void whatIsAtTheDestinationIsNeverOverwritten_data();
    void whatIsAtTheDestinationIsNeverOverwritten();
    void aFullDiskLeavesTheSourceWholeAndNothingElse_data();
    void aFullDiskLeavesTheSourceWholeAndNothingElse();
    void aSourceThatMayNotBeRemovedIsNotCopied_data();
    void aSourceThatMayNotBeRemovedIsNotCopied();
    void aFileThatIsWrittenMeanwhileIsNeverLost();
    void aReadOnlyFolderArrivesReadOnly();
    void anInheritedAccessListIsNotLeftOnTheCopy();
    void aFolderIsNotCopiedIntoItselfThroughAnotherMount();
    void interruptedCopiesAreRemovedAndNothingElse();

private:
    [[nodiscard]] QString there(const QString& name) const { return m_home->path(u"other/"_s + name); }

    [[nodiscard]] int move(const QString& from, const QString& to) const;

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<PrivateMounts> m_mounts;
};

namespace {

const fileSystem::Protection unprotected;

int codeOf(const Result<void>& result)
{
    return result ? 0 : result.error().code;
}

void setTime(const QByteArray& path, time_t seconds, long nanoseconds)
{
    const timespec times[] = {{.tv_sec = seconds, .tv_nsec = nanoseconds}, {.tv_sec = seconds, .tv_nsec = nanoseconds}};
    QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, AT_SYMLINK_NOFOLLOW), 0);
}

/// Of this process, in bytes.
qint64 addressSpace()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').first().toLongLong() * ::sysconf(_SC_PAGESIZE)
                                          : 0;
}

} // namespace

void FileSystem_across_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileSystem_across_test::init()
{
    m_home = std::make_unique<TemporaryHome>();
    m_mounts = std::make_unique<PrivateMounts>();
    m_mounts->mountTemporary(m_home->path(u"other"_s));
}

void FileSystem_across_test::cleanup()
{
    m_mounts.reset();
    m_home.reset();
}

int FileSystem_across_test::move(const QString& from, const QString& to) const
{
    return codeOf(fileSystem::Batch(unprotected).move(from, to));
}

void FileSystem_across_test::aFileKeepsContentModeTimesAndAttributes()
{
    const QString from = m_home->makeFile(u"a.txt"_s, QByteArray(300'000, 'x'));
    QCOMPARE(::chmod(from.toUtf8().constData(), 06754), 0);
    QCOMPARE(::chown(from.toUtf8().constData(), 1234, 4321), 0);
    QCOMPARE(::chmod(from.toUtf8().constData(), 06754), 0);
    QCOMPARE(::setxattr(from.toUtf8().constData(), "trusted.lapsa", "a\0b", 3, 0), 0);
    setTime(from.toUtf8(), -5, 123'456'789);
    const auto before = treeAt(from);

    QCOMPARE(move(from, there(u"b.txt"_s)), 0);

    QCOMPARE(treeAt(there(u"b.txt"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
    QCOMPARE(rawNames(there({})), QList<QByteArray>{"b.txt"});
}

void FileSystem_across_test::aSparseFileStaysSparse()
{
    const QString from = m_home->makeFile(u"a"_s, "head");
    QFile file(from);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(40'000'000) && file.seek(20'000'000));
    QCOMPARE(file.write("middle"), 6);
    file.close();
    const auto before = treeAt(from);

    QCOMPARE(move(from, there(u"a"_s)), 0);

    QCOMPARE(treeAt(there(u"a"_s)), before);
    struct stat status = {};
    QCOMPARE(::stat(there(u"a"_s).toUtf8().constData(), &status), 0);
    QVERIFY(status.st_blocks * 512 < 100'000);
}

void FileSystem_across_test::aLinkStaysALink_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("to a file") << QByteArray("file");
    QTest::newRow("to a folder") << QByteArray("folder");
    QTest::newRow("dangling") << QByteArray("/nowhere/at all");
}

void FileSystem_across_test::aLinkStaysALink()
{
    QFETCH(QByteArray, target);
    m_home->makeFile(u"file"_s);
    m_home->makeFile(u"folder/inside"_s);
    const QString from = m_home->path(u"link"_s);
    QCOMPARE(::symlink(target.constData(), from.toUtf8().constData()), 0);
    setTime(from.toUtf8(), 1'000'000, 1);
    const auto before = treeAt(from);

    QCOMPARE(move(from, there(u"link"_s)), 0);

    QCOMPARE(treeAt(there(u"link"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
    QVERIFY(fileSystem::exists(m_home->path(u"file"_s)) && fileSystem::exists(m_home->path(u"folder/inside"_s)));
}

void FileSystem_across_test::aPipeStaysAPipe()
{
    const QString from = m_home->path(u"pipe"_s);
    QCOMPARE(::mkfifo(from.toUtf8().constData(), 0640), 0);
    setTime(from.toUtf8(), 1'000'000, 7);
    const auto before = treeAt(from);

    QCOMPARE(move(from, there(u"pipe"_s)), 0);

    QCOMPARE(treeAt(there(u"pipe"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
}

void FileSystem_across_test::aFolderArrivesAsItWas()
{
    const QByteArray from = m_home->makeFolder(u"a folder"_s).toUtf8();
    m_home->makeFile(u"a folder/one/two/deep.txt"_s);
    m_home->makeFile(u"a folder/empty.txt"_s, "");
    m_home->makeFolder(u"a folder/nothing in it"_s);
    makeRawFile(from + "/line\nbreak 100% \"quoted\" back\\slash");
    makeRawFile(from + '/' + QByteArray(255, 'n'));
    QCOMPARE(::link((from + "/one/two/deep.txt").constData(), (from + "/hard link").constData()), 0);
    QCOMPARE(::symlink("one/two/deep.txt", (from + "/link").constData()), 0);
    QCOMPARE(::mkfifo((from + "/one/pipe").constData(), 0600), 0);
    QCOMPARE(::mknod((from + "/one/device").constData(), S_IFCHR | 0600, makedev(1, 3)), 0);
    QCOMPARE(::setxattr((from + "/one").constData(), "trusted.lapsa", "folder", 6, 0), 0);
    QCOMPARE(::chmod((from + "/one").constData(), 02750), 0);
    setTime(from + "/one/two/deep.txt", 1'111'111'111, 999'999'999);
    setTime(from + "/one", 1'111'111'112, 5);
    setTime(from, 1'111'111'113, 6);
    const auto before = treeAt(QString::fromUtf8(from));

    QCOMPARE(move(QString::fromUtf8(from), there(u"b"_s)), 0);

    QCOMPARE(treeAt(there(u"b"_s)), before);
    QVERIFY(!fileSystem::exists(QString::fromUtf8(from)));
    QCOMPARE(rawNames(there({})), QList<QByteArray>{"b"});
}

void FileSystem_across_test::namesThatAreNoTextSurviveInsideAFolder()
{
    const QString from = m_home->makeFolder(u"folder"_s);
    const QByteArray subfolder = from.toUtf8() + "/\xff\xfe folder";
    QCOMPARE(::mkdir(subfolder.constData(), 0755), 0);
    makeRawFile(subfolder + "/\x80 file");
    const auto before = treeAt(from);

    QCOMPARE(move(from, there(u"folder"_s)), 0);

    QCOMPARE(treeAt(there(u"folder"_s)), before);
    QVERIFY(!fileSystem::exists(from));
}

void FileSystem_across_test::aFolderOfMoreLevelsThanDescriptorsArrives()
{
    const QString from = m_home->makeFolder(u"deep"_s);
    constexpr int levels = 1200;
    int folder = ::open(from.toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        QCOMPARE(::mkdirat(folder, "below", 0755), 0);
        const int below = ::openat(folder, "below", O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    ::close(::openat(folder, "bottom", O_WRONLY | O_CREAT, 0644));
    ::close(folder);

    QCOMPARE(move(from, there(u"deep"_s)), 0);

    QVERIFY(!fileSystem::exists(from));
    folder = ::open(there(u"deep"_s).toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        const int below = ::openat(folder, "below", O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    QCOMPARE(::faccessat(folder, "bottom", F_OK, 0), 0);
    ::close(folder);
    QCOMPARE(codeOf(fileSystem::Batch(unprotected).remove(there(u"deep"_s))), 0);
}

void FileSystem_across_test::aDeepFolderTakesNoMoreMemoryThanItHasFolders()
{
    const QString from = m_home->makeFolder(u"deep"_s);
    constexpr int levels = 2000;
    const QByteArray name(255, 'n');
    int folder = ::open(from.toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        QCOMPARE(::mkdirat(folder, name.constData(), 0755), 0);
        const int below = ::openat(folder, name.constData(), O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    ::close(::openat(folder, "first", O_WRONLY | O_CREAT, 0644));
    QCOMPARE(::linkat(folder, "first", folder, "second", 0), 0);
    ::close(folder);

    const int error = asUser(0, [&] {
        // Whole paths would take 512 MB.
        const rlim_t room = rlim_t(addressSpace()) + (rlim_t{128} << 20);
        const rlimit limit{.rlim_cur = room, .rlim_max = room};
        return ::setrlimit(RLIMIT_AS, &limit) == 0 ? move(from, there(u"deep"_s)) : 255;
    });

    QCOMPARE(error, 0);
    QVERIFY(!fileSystem::exists(from));
    folder = ::open(there(u"deep"_s).toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < levels; ++level) {
        const int below = ::openat(folder, name.constData(), O_RDONLY | O_DIRECTORY);
        ::close(folder);
        folder = below;
    }
    struct stat first = {};
    struct stat second = {};
    QCOMPARE(::fstatat(folder, "first", &first, 0), 0);
    QCOMPARE(::fstatat(folder, "second", &second, 0), 0);
    QCOMPARE(first.st_ino, second.st_ino);
    ::close(folder);
    QCOMPARE(codeOf(fileSystem::Batch(unprotected).remove(there(u"deep"_s))), 0);
}

void FileSystem_across_test::whatIsAtTheDestinationIsNeverOverwritten_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QString>("taken");
    for (const QString& source : {u"file"_s, u"folder"_s, u"link"_s}) {
        for (const QString& taken : {u"file"_s, u"folder"_s, u"dangling link"_s}) {
            QTest::addRow("a %s onto a %s", qPrintable(source), qPrintable(taken)) << source << taken;
        }
    }
}

void FileSystem_across_test::whatIsAtTheDestinationIsNeverOverwritten()
{
    QFETCH(QString, source);
    QFETCH(QString, taken);
    m_home->makeFile(u"file"_s, "the file to move\n");
    m_home->makeFile(u"folder/inside"_s, "the folder to move\n");
    QVERIFY(QFile::link(u"file"_s, m_home->path(u"link"_s)));
    m_home->makeFile(u"other/file"_s, "there before\n");
    m_home->makeFolder(u"other/folder"_s);
    QVERIFY(QFile::link(u"nowhere"_s, there(u"dangling link"_s)));
    const auto before = treeAt(m_home->path({}));

    QCOMPARE(move(m_home->path(source), there(taken)), EEXIST);

    QCOMPARE(treeAt(m_home->path({})), before);
}

void FileSystem_across_test::aFullDiskLeavesTheSourceWholeAndNothingElse_data()
{
    QTest::addColumn<bool>("folder");
    QTest::newRow("a file") << false;
    QTest::newRow("a folder") << true;
}

void FileSystem_across_test::aFullDiskLeavesTheSourceWholeAndNothingElse()
{
    QFETCH(bool, folder);
    m_mounts->mountTemporary(m_home->path(u"small"_s), "size=256k");
    m_home->makeFile(u"folder/one"_s, QByteArray(100'000, '1'));
    m_home->makeFile(u"folder/two/three"_s, QByteArray(400'000, '2'));
    const QString from = m_home->path(folder ? u"folder"_s : u"folder/two/three"_s);
    const auto before = treeAt(from);

    QCOMPARE(move(from, m_home->path(u"small/copy"_s)), ENOSPC);

    QCOMPARE(treeAt(from), before);
    QVERIFY(rawNames(m_home->path(u"small"_s)).isEmpty());
}

void FileSystem_across_test::aSourceThatMayNotBeRemovedIsNotCopied_data()
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

void FileSystem_across_test::aSourceThatMayNotBeRemovedIsNotCopied()
{
    QFETCH(QString, withoutRight);
    QFETCH(uint, mode);
    QFETCH(QString, source);
    m_home->makeFile(u"mine/folder/file"_s);
    m_home->makeFile(u"mine/folder/sub/inside"_s);
    m_home->makeFolder(u"other/mine"_s);
    for (const QString& path : {u"."_s, u"mine"_s, u"mine/folder"_s, u"mine/folder/sub"_s, u"mine/folder/file"_s,
                                u"mine/folder/sub/inside"_s, u"other/mine"_s}) {
        giveToOrdinaryUser(m_home->path(path));
    }
    const QString locked = withoutRight == u"mine"_s && source.endsWith(u"file"_s) ? u"mine/folder"_s : withoutRight;
    QCOMPARE(::chmod(m_home->path(locked).toUtf8().constData(), mode), 0);
    const auto before = treeAt(m_home->path(u"mine"_s));

    const int error = asOrdinaryUser([&] { return move(m_home->path(source), there(u"mine/copy"_s)); });

    QCOMPARE(error, EACCES);
    QCOMPARE(treeAt(m_home->path(u"mine"_s)), before);
    QVERIFY(rawNames(there(u"mine"_s)).isEmpty());
}

void FileSystem_across_test::aFileThatIsWrittenMeanwhileIsNeverLost()
{
    // Each round opens the file again and again while it is moved, and appends to it: whatever the move says, every
    // byte written is found afterwards at one of the two places.
    for (int round = 0; round < 40; ++round) {
        const QString name = u"file %1"_s.arg(round);
        const QString from = m_home->makeFile(name, QByteArray(200'000, 'a'));
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

        const int error = move(from, there(name));

        stop = true;
        writer.join();
        struct stat found = {};
        QVERIFY(error == 0 || error == ETXTBSY);
        QCOMPARE(fileSystem::exists(there(name)), error == 0);
        QCOMPARE(fileSystem::exists(from), error != 0);
        QCOMPARE(::stat(error == 0 ? there(name).toUtf8().constData() : path.constData(), &found), 0);
        QCOMPARE(found.st_size, written.load());
    }
    for (const QByteArray& name : rawNames(there({}))) {
        QVERIFY(!name.startsWith('.'));
    }
}

void FileSystem_across_test::aReadOnlyFolderArrivesReadOnly()
{
    const QString from = m_home->makeFolder(u"folder"_s);
    m_home->makeFile(u"folder/file"_s);
    QCOMPARE(::chmod(from.toUtf8().constData(), 0555), 0);
    const auto before = treeAt(from);

    QCOMPARE(move(from, there(u"folder"_s)), 0);

    QCOMPARE(treeAt(there(u"folder"_s)), before);
}

void FileSystem_across_test::anInheritedAccessListIsNotLeftOnTheCopy()
{
    // user::rwx, user 1000 rwx, group::r-x, mask::rwx, other::r-x, in the kernel's form
    const QByteArray list = QByteArray::fromHex("02000000"
                                                "01000700ffffffff"
                                                "02000700e8030000"
                                                "04000500ffffffff"
                                                "10000700ffffffff"
                                                "20000500ffffffff");
    const QByteArray folder = m_home->makeFolder(u"other/shared"_s).toUtf8();
    QCOMPARE(::setxattr(folder.constData(), "system.posix_acl_default", list.constData(), size_t(list.size()), 0), 0);
    const QString file = m_home->makeFile(u"file"_s);
    const QString tree = m_home->makeFolder(u"tree"_s);
    m_home->makeFile(u"tree/sub/file"_s);
    QCOMPARE(::setxattr((tree + u"/sub"_s).toUtf8().constData(), "system.posix_acl_access", list.constData(),
                        size_t(list.size()), 0),
             0);
    const auto fileBefore = treeAt(file);
    const auto treeBefore = treeAt(tree);

    QCOMPARE(move(file, there(u"shared/file"_s)), 0);
    QCOMPARE(move(tree, there(u"shared/tree"_s)), 0);

    QCOMPARE(treeAt(there(u"shared/file"_s)), fileBefore);
    QCOMPARE(treeAt(there(u"shared/tree"_s)), treeBefore);
}

void FileSystem_across_test::aFolderIsNotCopiedIntoItselfThroughAnotherMount()
{
    const QString from = m_home->makeFolder(u"folder"_s);
    m_home->makeFile(u"folder/inside/file"_s);
    const QString mirror = m_home->makeFolder(u"mirror"_s);
    m_mounts->bind(from, mirror);
    const auto before = treeAt(from);

    QCOMPARE(move(from, mirror + u"/inside/copy"_s), EINVAL);

    QCOMPARE(treeAt(from).size(), before.size());
    QCOMPARE(rawNames(from + u"/inside"_s), QList<QByteArray>{"file"});
}

void FileSystem_across_test::interruptedCopiesAreRemovedAndNothingElse()
{
    const QString leftFolder = m_home->makeFolder(u"r/.lapsa-copy-0123456789abcdef"_s);
    m_home->makeFile(u"r/.lapsa-copy-0123456789abcdef/sub/file"_s);
    const QString leftFile = m_home->makeFile(u"r/.lapsa-copy-00000000000000aa"_s);
    for (const QString& path : {leftFolder, leftFile}) {
        QCOMPARE(::chmod(path.toUtf8().constData(), 01700), 0);
    }
    m_home->makeFile(u"r/.lapsa-copy-1111111111111111"_s); // another mode
    const QString otherName = m_home->makeFolder(u"r/.lapsa-copy-0123456789abcdeg"_s);
    const QString othersFolder = m_home->makeFolder(u"r/.lapsa-copy-2222222222222222"_s);
    QVERIFY(QFile::link(otherName, m_home->path(u"r/.lapsa-copy-3333333333333333"_s)));
    for (const QString& path : {otherName, othersFolder}) {
        QCOMPARE(::chmod(path.toUtf8().constData(), 01700), 0);
    }
    giveToOrdinaryUser(othersFolder);

    fileSystem::removeInterruptedCopies(m_home->path(u"r"_s));

    const QList<QByteArray> kept = {".lapsa-copy-0123456789abcdeg", ".lapsa-copy-1111111111111111",
                                    ".lapsa-copy-2222222222222222", ".lapsa-copy-3333333333333333"};
    QCOMPARE(rawNames(m_home->path(u"r"_s)), kept);
}

QTEST_GUILESS_MAIN(FileSystem_across_test)
#include "FileSystem_across_test.moc"
