// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CaselessDisk.h"
#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "LoopDisk.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Moves to and from disks of several kinds, and what is trashed and removed there.
class FileSystem_disks_test final : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup();

    void aFolderGoesThereAndBackAsItWas_data() { kindRows(); }

    void aFolderGoesThereAndBackAsItWas();

    void whatIsTrashedStaysOnItsDisk_data() { kindRows(); }

    void whatIsTrashedStaysOnItsDisk();

    void whatIsRemovedIsGone_data() { kindRows(); }

    void whatIsRemovedIsGone();
    void namesOfOneFileArriveWhereThereAreNoHardLinks();
    void aSubvolumeIsAnotherFileSystem();
    void aFolderThatHoldsASubvolumeIsRemoved();

private:
    static void kindRows();

    [[nodiscard]] bool mount(const QString& kind);
    void makeTree(const QString& folder) const;
    [[nodiscard]] bool makeSubvolume(const QString& relative) const;

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<LoopDisk> m_disk;
};

namespace {

int codeOf(const Result<void>& result)
{
    return result ? 0 : result.error().code;
}

} // namespace

void FileSystem_disks_test::initTestCase()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts images of disks, which needs root");
    }
}

void FileSystem_disks_test::cleanup()
{
    m_disk.reset();
    m_home.reset();
}

void FileSystem_disks_test::kindRows()
{
    QTest::addColumn<QString>("kind");
    for (const QString& kind : {u"ext4"_s, u"xfs"_s, u"btrfs"_s}) {
        QTest::addRow("%s", qPrintable(kind)) << kind;
    }
}

bool FileSystem_disks_test::mount(const QString& kind)
{
    m_disk = LoopDisk::mountedAt(m_home->path(u"disk"_s), kind);
    return m_disk != nullptr;
}

void FileSystem_disks_test::makeTree(const QString& folder) const
{
    const QString file = m_home->makeFile(folder + u"/sub/file"_s, QByteArray(300'000, 'x'));
    const QByteArray path = file.toUtf8();
    QCOMPARE(::setxattr(path.constData(), "user.lapsa", "a\0b", 3, 0), 0);
    QCOMPARE(::chown(path.constData(), 1234, 4321), 0);
    QCOMPARE(::chmod(path.constData(), 06754), 0);
    QCOMPARE(::link(path.constData(), m_home->path(folder + u"/second"_s).toUtf8().constData()), 0);
    QCOMPARE(::mkfifo(m_home->path(folder + u"/pipe"_s).toUtf8().constData(), 0640), 0);
    QVERIFY(QFile::link(u"nowhere"_s, m_home->path(folder + u"/link"_s)));
    QFile sparse(m_home->makeFile(folder + u"/sparse"_s));
    QVERIFY(sparse.open(QIODevice::ReadWrite) && sparse.resize(40'000'000));
    QCOMPARE(::chmod(m_home->path(folder + u"/sub"_s).toUtf8().constData(), 0550), 0);
}

bool FileSystem_disks_test::makeSubvolume(const QString& relative) const
{
    QProcess process;
    process.start(u"btrfs"_s, {u"subvolume"_s, u"create"_s, m_home->path(relative)});
    return process.waitForFinished() && process.exitCode() == 0;
}

void FileSystem_disks_test::aFolderGoesThereAndBackAsItWas()
{
    QFETCH(QString, kind);
    if (!mount(kind)) {
        QSKIP("no disk of this kind");
    }
    makeTree(u"tree"_s);
    const QString here = m_home->path(u"tree"_s);
    const QString there = m_home->path(u"disk/tree"_s);
    const auto before = treeAt(here);

    QCOMPARE(codeOf(fileSystem::Batch({}).move(here, there)), 0);
    QCOMPARE(treeAt(there), before);
    QVERIFY(!fileSystem::exists(here));
    struct stat sparse = {};
    QCOMPARE(::stat((there + u"/sparse"_s).toUtf8().constData(), &sparse), 0);
    QVERIFY(sparse.st_blocks * 512 < 1'000'000);

    QCOMPARE(codeOf(fileSystem::Batch({}).move(there, here)), 0);
    QCOMPARE(treeAt(here), before);
    QVERIFY(!rawNames(m_home->path(u"disk"_s)).contains("tree"));
}

void FileSystem_disks_test::whatIsTrashedStaysOnItsDisk()
{
    QFETCH(QString, kind);
    if (!mount(kind)) {
        QSKIP("no disk of this kind");
    }
    makeTree(u"disk/in/tree"_s);
    const auto before = treeAt(m_home->path(u"disk/in/tree"_s));

    QCOMPARE(codeOf(fileSystem::Batch({}).moveToTrash(m_home->path(u"disk/in/tree"_s))), 0);

    const QString own = u"disk/.Trash-%1"_s.arg(::geteuid());
    QCOMPARE(treeAt(m_home->path(own + u"/files/tree"_s)), before);
    QCOMPARE(m_home->names(own + u"/info"_s), QStringList{u"tree.trashinfo"_s});
    QVERIFY(m_home->names(u"disk/in"_s).isEmpty());
}

void FileSystem_disks_test::whatIsRemovedIsGone()
{
    QFETCH(QString, kind);
    if (!mount(kind)) {
        QSKIP("no disk of this kind");
    }
    makeTree(u"disk/in/tree"_s);
    m_home->makeFile(u"disk/in/beside"_s);

    QCOMPARE(codeOf(fileSystem::Batch({}).remove(m_home->path(u"disk/in/tree"_s))), 0);

    QCOMPARE(m_home->names(u"disk/in"_s), QStringList{u"beside"_s});
}

void FileSystem_disks_test::namesOfOneFileArriveWhereThereAreNoHardLinks()
{
    const auto disk = CaselessDisk::mountedAt(m_home->path(u"stick"_s));
    if (!disk) {
        QSKIP("no disk with exFAT");
    }
    const QString first = m_home->makeFile(u"tree/first"_s, "one content\n");
    QCOMPARE(::link(first.toUtf8().constData(), m_home->path(u"tree/second"_s).toUtf8().constData()), 0);

    QCOMPARE(codeOf(fileSystem::Batch({}).move(m_home->path(u"tree"_s), m_home->path(u"stick/tree"_s))), 0);

    QVERIFY(!fileSystem::exists(m_home->path(u"tree"_s)));
    for (const QString& name : {u"first"_s, u"second"_s}) {
        QFile file(m_home->path(u"stick/tree/"_s + name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), "one content\n");
    }
}

/// It has a device number of its own, and is no mount.
void FileSystem_disks_test::aSubvolumeIsAnotherFileSystem()
{
    if (!mount(u"btrfs"_s) || !makeSubvolume(u"disk/volume"_s)) {
        QSKIP("no disk with Btrfs, or no btrfs (btrfs-progs)");
    }
    makeTree(u"disk/volume/tree"_s);
    const auto before = treeAt(m_home->path(u"disk/volume/tree"_s));

    QCOMPARE(codeOf(fileSystem::Batch({}).move(m_home->path(u"disk/volume/tree"_s), m_home->path(u"disk/tree"_s))), 0);

    QCOMPARE(treeAt(m_home->path(u"disk/tree"_s)), before);
    QVERIFY(rawNames(m_home->path(u"disk/volume"_s)).isEmpty());
}

void FileSystem_disks_test::aFolderThatHoldsASubvolumeIsRemoved()
{
    if (!mount(u"btrfs"_s) || !QDir().mkpath(m_home->path(u"disk/in"_s)) || !makeSubvolume(u"disk/in/volume"_s)) {
        QSKIP("no disk with Btrfs, or no btrfs (btrfs-progs)");
    }
    makeTree(u"disk/in/volume/tree"_s);

    QCOMPARE(codeOf(fileSystem::Batch({}).remove(m_home->path(u"disk/in"_s))), 0);

    QVERIFY(!fileSystem::exists(m_home->path(u"disk/in"_s)));
}

QTEST_GUILESS_MAIN(FileSystem_disks_test)
#include "FileSystem_disks_test.moc"
