// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DiskPair.h"

#include "FaultWorld.h"

#include <QProcess>

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr long long diskSize = 64LL << 20;
constexpr long long belowSize = 512LL << 20;

bool run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

bool makeSparseFile(const QByteArray& path, long long size)
{
    const int file = ::open(path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    const bool made = file >= 0 && ::ftruncate(file, size) == 0;
    ::close(file);
    return made;
}

/// Where a disk begins in the file that holds both.
QString offset(int disk)
{
    return QString::number(disk * diskSize);
}

bool makeFileSystem(const QString& disks, int disk)
{
    return run(u"mkfs.ext4"_s,
               {u"-q"_s, u"-F"_s, u"-E"_s, u"offset=%1,lazy_itable_init=0,lazy_journal_init=0"_s.arg(offset(disk)),
                disks, QString::number(diskSize / 1024) + u'k'});
}

bool mountDisk(const QString& disks, int disk, const QString& place)
{
    const QString options = u"loop,nodev,offset=%1,sizelimit=%2"_s.arg(offset(disk)).arg(diskSize);
    return run(u"mount"_s, {u"-t"_s, u"ext4"_s, u"-o"_s, options, disks, place});
}

void syncFileSystem(const QString& place)
{
    const int folder = ::open(place.toUtf8().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (::syncfs(folder) != 0) {
        qFatal("cannot sync %s", qPrintable(place));
    }
    ::close(folder);
}

int unnamedFile(const QString& place)
{
    return ::open(place.toUtf8().constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
}

[[noreturn]] void commitForEver(const QString& home, const QString& volume)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int files[] = {unnamedFile(home), unnamedFile(volume)};
    for (bool longer = true;; longer = !longer) {
        for (const int file : files) {
            // The length is what the journal is about.
            if (::ftruncate(file, longer ? 2 : 1) != 0 || ::fsync(file) != 0) {
                ::_exit(EXIT_FAILURE);
            }
        }
    }
}

} // namespace

std::unique_ptr<DiskPair> DiskPair::mountedIn(const FaultWorld& world)
{
    if (!world.mounted() || ::geteuid() != 0) {
        return nullptr;
    }
    std::unique_ptr<DiskPair> disks(new DiskPair(world));
    return disks->make() ? std::move(disks) : nullptr;
}

DiskPair::DiskPair(const FaultWorld& world)
    : m_base(world.base())
    , m_home(world.home())
    , m_volume(world.volume())
{}

DiskPair::~DiskPair()
{
    stopCommits();
    unmountDisks();
    ::umount2((m_base + "/below").constData(), MNT_DETACH);
    ::rmdir((m_base + "/below").constData());
    ::unlink((m_base + "/below.img").constData());
}

bool DiskPair::make()
{
    const QByteArray below = m_base + "/below";
    const QByteArray disks = below + "/disks";
    const QString image = QString::fromUtf8(below) + u".img"_s;
    return ::mkdir(below.constData(), 0700) == 0 && makeSparseFile(image.toUtf8(), belowSize) &&
           run(u"mkfs.xfs"_s, {u"-q"_s, u"-m"_s, u"reflink=1"_s, image}) &&
           run(u"mount"_s, {u"-o"_s, u"loop"_s, image, QString::fromUtf8(below)}) &&
           makeSparseFile(disks, 2 * diskSize) && makeFileSystem(QString::fromUtf8(disks), 0) &&
           makeFileSystem(QString::fromUtf8(disks), 1) && mountDisks();
}

bool DiskPair::mountDisks() const
{
    const QString disks = QString::fromUtf8(m_base) + u"/below/disks"_s;
    return mountDisk(disks, 0, m_home) && mountDisk(disks, 1, m_volume);
}

void DiskPair::unmountDisks() const
{
    for (const QString& place : {m_home, m_volume}) {
        struct statfs status = {};
        // What the world itself has there is no disk.
        if (::statfs(place.toUtf8().constData(), &status) == 0 && status.f_type == EXT4_SUPER_MAGIC &&
            ::umount2(place.toUtf8().constData(), 0) != 0) {
            qFatal("cannot unmount %s", qPrintable(place));
        }
    }
}

void DiskPair::sync() const
{
    syncFileSystem(m_home);
    syncFileSystem(m_volume);
}

void DiskPair::startCommits()
{
    std::fflush(nullptr);
    m_commits = ::fork();
    if (m_commits == 0) {
        commitForEver(m_home, m_volume);
    }
}

void DiskPair::stopCommits()
{
    if (m_commits > 0) {
        ::kill(m_commits, SIGKILL);
        ::waitpid(m_commits, nullptr, 0);
        m_commits = -1;
    }
}

void DiskPair::cutPower()
{
    const QByteArray disks = m_base + "/below/disks";
    const QByteArray picture = disks + ".cut";
    const int from = ::open(disks.constData(), O_RDONLY | O_CLOEXEC);
    const int to = ::open(picture.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
    if (::ioctl(to, FICLONE, from) != 0) {
        qFatal("cannot take a picture of the disks");
    }
    ::close(from);
    ::close(to);
    stopCommits();
    // The old ones write out what they have, to no effect.
    unmountDisks();
    if (::rename(picture.constData(), disks.constData()) != 0 || !mountDisks()) {
        qFatal("cannot mount what was left on the disks");
    }
}

} // namespace lapsa::test
