// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TwoDisks.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <optional>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// What a file or folder is after a move from one file system to another.
class FileSystem_across_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase();

    void init() { m_disks.emplace(); }

    void cleanup() { m_disks.reset(); }

    void aFileKeepsContentModeTimesAndAttributes();
    void aSparseFileStaysSparse();
    void aLinkStaysALink_data();
    void aLinkStaysALink();
    void aPipeStaysAPipe();
    void aFolderArrivesAsItWas();
    void namesThatAreNoTextSurviveInsideAFolder();
    void aReadOnlyFolderArrivesReadOnly();
    void anInheritedAccessListIsNotLeftOnTheCopy();

private:
    std::optional<TwoDisks> m_disks;
};

namespace {

void setTime(const QByteArray& path, time_t seconds, long nanoseconds)
{
    const timespec times[] = {{.tv_sec = seconds, .tv_nsec = nanoseconds}, {.tv_sec = seconds, .tv_nsec = nanoseconds}};
    QCOMPARE(::utimensat(AT_FDCWD, path.constData(), times, AT_SYMLINK_NOFOLLOW), 0);
}

} // namespace

void FileSystem_across_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("a second file system is mounted for these tests, which needs root");
    }
}

void FileSystem_across_test::aFileKeepsContentModeTimesAndAttributes()
{
    const QString from = m_disks->home.makeFile(u"a.txt"_s, QByteArray(300'000, 'x'));
    QCOMPARE(::chmod(from.toUtf8().constData(), 06754), 0);
    QCOMPARE(::chown(from.toUtf8().constData(), 1234, 4321), 0);
    QCOMPARE(::chmod(from.toUtf8().constData(), 06754), 0);
    QCOMPARE(::setxattr(from.toUtf8().constData(), "trusted.lapsa", "a\0b", 3, 0), 0);
    setTime(from.toUtf8(), -5, 123'456'789);
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"b.txt"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"b.txt"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
    QCOMPARE(rawNames(m_disks->there({})), QList<QByteArray>{"b.txt"});
}

void FileSystem_across_test::aSparseFileStaysSparse()
{
    const QString from = m_disks->home.makeFile(u"a"_s, "head");
    QFile file(from);
    QVERIFY(file.open(QIODevice::ReadWrite) && file.resize(40'000'000) && file.seek(20'000'000));
    QCOMPARE(file.write("middle"), 6);
    file.close();
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"a"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"a"_s)), before);
    struct stat status = {};
    QCOMPARE(::stat(m_disks->there(u"a"_s).toUtf8().constData(), &status), 0);
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
    m_disks->home.makeFile(u"file"_s);
    m_disks->home.makeFile(u"folder/inside"_s);
    const QString from = m_disks->home.path(u"link"_s);
    QCOMPARE(::symlink(target.constData(), from.toUtf8().constData()), 0);
    setTime(from.toUtf8(), 1'000'000, 1);
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"link"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"link"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
    QVERIFY(fileSystem::exists(m_disks->home.path(u"file"_s)) &&
            fileSystem::exists(m_disks->home.path(u"folder/inside"_s)));
}

void FileSystem_across_test::aPipeStaysAPipe()
{
    const QString from = m_disks->home.path(u"pipe"_s);
    QCOMPARE(::mkfifo(from.toUtf8().constData(), 0640), 0);
    setTime(from.toUtf8(), 1'000'000, 7);
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"pipe"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"pipe"_s)), before);
    QVERIFY(treeAt(from).isEmpty());
}

void FileSystem_across_test::aFolderArrivesAsItWas()
{
    const QByteArray from = m_disks->home.makeFolder(u"a folder"_s).toUtf8();
    m_disks->home.makeFile(u"a folder/one/two/deep.txt"_s);
    m_disks->home.makeFile(u"a folder/empty.txt"_s, "");
    m_disks->home.makeFolder(u"a folder/nothing in it"_s);
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

    QCOMPARE(TwoDisks::move(QString::fromUtf8(from), m_disks->there(u"b"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"b"_s)), before);
    QVERIFY(!fileSystem::exists(QString::fromUtf8(from)));
    QCOMPARE(rawNames(m_disks->there({})), QList<QByteArray>{"b"});
}

void FileSystem_across_test::namesThatAreNoTextSurviveInsideAFolder()
{
    const QString from = m_disks->home.makeFolder(u"folder"_s);
    const QByteArray subfolder = from.toUtf8() + "/\xff\xfe folder";
    QCOMPARE(::mkdir(subfolder.constData(), 0755), 0);
    makeRawFile(subfolder + "/\x80 file");
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"folder"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"folder"_s)), before);
    QVERIFY(!fileSystem::exists(from));
}

void FileSystem_across_test::aReadOnlyFolderArrivesReadOnly()
{
    const QString from = m_disks->home.makeFolder(u"folder"_s);
    m_disks->home.makeFile(u"folder/file"_s);
    QCOMPARE(::chmod(from.toUtf8().constData(), 0555), 0);
    const auto before = treeAt(from);

    QCOMPARE(TwoDisks::move(from, m_disks->there(u"folder"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"folder"_s)), before);
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
    const QByteArray folder = m_disks->home.makeFolder(u"other/shared"_s).toUtf8();
    QCOMPARE(::setxattr(folder.constData(), "system.posix_acl_default", list.constData(), size_t(list.size()), 0), 0);
    const QString file = m_disks->home.makeFile(u"file"_s);
    const QString tree = m_disks->home.makeFolder(u"tree"_s);
    m_disks->home.makeFile(u"tree/sub/file"_s);
    QCOMPARE(::setxattr((tree + u"/sub"_s).toUtf8().constData(), "system.posix_acl_access", list.constData(),
                        size_t(list.size()), 0),
             0);
    const auto fileBefore = treeAt(file);
    const auto treeBefore = treeAt(tree);

    QCOMPARE(TwoDisks::move(file, m_disks->there(u"shared/file"_s)), 0);
    QCOMPARE(TwoDisks::move(tree, m_disks->there(u"shared/tree"_s)), 0);

    QCOMPARE(treeAt(m_disks->there(u"shared/file"_s)), fileBefore);
    QCOMPARE(treeAt(m_disks->there(u"shared/tree"_s)), treeBefore);
}

QTEST_GUILESS_MAIN(FileSystem_across_test)
#include "FileSystem_across_test.moc"
