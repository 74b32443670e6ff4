// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "LoopDisk.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QStandardPaths>
#include <QTest>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// What a file or folder has besides content, on two disks with a file system that keeps all of it.
class FileSystem_attributes_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void capabilitiesAccessListsAndProjectsAreKept_data();
    void capabilitiesAccessListsAndProjectsAreKept();
};

namespace {

fsxattr extendedFlags(const QString& path)
{
    fsxattr flags = {};
    const int file = ::open(path.toUtf8().constData(), O_RDONLY);
    ::ioctl(file, FS_IOC_FSGETXATTR, &flags);
    ::close(file);
    return flags;
}

void setProject(const QString& path, unsigned project, unsigned flags)
{
    fsxattr wanted = extendedFlags(path);
    wanted.fsx_projid = project;
    wanted.fsx_xflags |= flags;
    const int file = ::open(path.toUtf8().constData(), O_RDONLY);
    QCOMPARE(::ioctl(file, FS_IOC_FSSETXATTR, &wanted), 0);
    ::close(file);
}

void setAttribute(const QString& path, const char* name, const QByteArray& value)
{
    QCOMPARE(::setxattr(path.toUtf8().constData(), name, value.constData(), size_t(value.size()), 0), 0);
}

} // namespace

void FileSystem_attributes_test::initTestCase()
{
    if (!PrivateMounts::available() || QStandardPaths::findExecutable(u"mkfs.xfs"_s).isEmpty()) {
        QSKIP("mounts images with XFS, which needs root and mkfs.xfs (xfsprogs)");
    }
}

void FileSystem_attributes_test::capabilitiesAccessListsAndProjectsAreKept_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a file") << u"folder/program"_s;
    QTest::newRow("a folder") << u"folder"_s;
}

void FileSystem_attributes_test::capabilitiesAccessListsAndProjectsAreKept()
{
    QFETCH(QString, path);
    const TemporaryHome home;
    const auto from = LoopDisk::mountedAt(home.path(u"from"_s), u"xfs"_s);
    const auto to = LoopDisk::mountedAt(home.path(u"to"_s), u"xfs"_s);
    if (!from || !to) {
        QSKIP("no loop devices, or no XFS");
    }
    const QString program = home.makeFile(u"from/folder/program"_s, "#!/bin/true\n");
    const QString folder = home.path(u"from/folder"_s);
    // In the kernel's form: version 2, permitted and effective CAP_NET_RAW; user::rwx, user 1000 rwx, group::r-x,
    // mask::rwx, other::r-x.
    setAttribute(program, "security.capability", QByteArray::fromHex("0100000200200000000000000000000000000000"));
    const QByteArray list =
        QByteArray::fromHex("0200000001000700ffffffff02000700e803000004000500ffffffff10000700ffffffff20000500ffffffff");
    setAttribute(program, "system.posix_acl_access", list);
    setAttribute(folder, "system.posix_acl_access", list);
    setAttribute(folder, "system.posix_acl_default", list);
    setProject(program, 7, 0);
    setProject(folder, 8, FS_XFLAG_PROJINHERIT);
    const auto before = treeAt(home.path(u"from/"_s + path));

    const Result<void> moved = fileSystem::Batch({}).move(home.path(u"from/"_s + path), home.path(u"to/copy"_s));

    QVERIFY(moved);
    QCOMPARE(treeAt(home.path(u"to/copy"_s)), before);
    const bool whole = path == u"folder"_s;
    QCOMPARE(extendedFlags(home.path(whole ? u"to/copy/program"_s : u"to/copy"_s)).fsx_projid, 7U);
    if (whole) {
        QCOMPARE(extendedFlags(home.path(u"to/copy"_s)).fsx_projid, 8U);
        QVERIFY((extendedFlags(home.path(u"to/copy"_s)).fsx_xflags & FS_XFLAG_PROJINHERIT) != 0);
    }
}

QTEST_GUILESS_MAIN(FileSystem_attributes_test)
#include "FileSystem_attributes_test.moc"
