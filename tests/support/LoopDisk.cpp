// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LoopDisk.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <sys/mount.h>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

bool run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

} // namespace

std::unique_ptr<LoopDisk> LoopDisk::mountedAt(const QString& folder, const QString& kind)
{
    std::unique_ptr<LoopDisk> disk(new LoopDisk(folder));
    return disk->mount(kind) ? std::move(disk) : nullptr;
}

LoopDisk::LoopDisk(const QString& folder)
    : m_folder(folder)
    , m_image(folder + u".image"_s)
{}

LoopDisk::~LoopDisk()
{
    ::umount2(m_folder.toUtf8().constData(), MNT_DETACH);
    QFile::remove(m_image);
}

bool LoopDisk::mount(const QString& kind) const
{
    constexpr qint64 size = 320 << 20; // the least that XFS takes
    QFile image(m_image);
    const QString force = kind == u"ext4"_s ? u"-F"_s : u"-f"_s;
    return QDir().mkpath(m_folder) && image.open(QIODevice::WriteOnly) && image.resize(size) &&
           run(u"mkfs."_s + kind, {u"-q"_s, force, m_image}) &&
           run(u"mount"_s, {u"-t"_s, kind, u"-o"_s, u"loop"_s, m_image, m_folder});
}

} // namespace lapsa::test
