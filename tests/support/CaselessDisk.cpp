// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CaselessDisk.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <sys/mount.h>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

bool run(const QString& program, const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    const bool worked = process.waitForFinished() && process.exitCode() == 0;
    if (output != nullptr) {
        *output = QString::fromUtf8(process.readAllStandardOutput()).trimmed();
    }
    return worked;
}

} // namespace

std::unique_ptr<CaselessDisk> CaselessDisk::mountedAt(const QString& folder)
{
    std::unique_ptr<CaselessDisk> disk(new CaselessDisk(folder));
    return disk->mount() ? std::move(disk) : nullptr;
}

CaselessDisk::CaselessDisk(const QString& folder)
    : m_folder(folder)
    , m_image(folder + u".img"_s)
{}

CaselessDisk::~CaselessDisk()
{
    ::umount2(m_folder.toUtf8().constData(), MNT_DETACH);
    QFile::remove(m_image);
}

bool CaselessDisk::mount()
{
    constexpr qint64 size = 16 << 20;
    QFile image(m_image);
    QString device;
    if (!QDir().mkpath(m_folder) || !image.open(QIODevice::WriteOnly) || !image.resize(size) ||
        !run(u"mkfs.exfat"_s, {m_image}) || !run(u"losetup"_s, {u"-f"_s, u"--show"_s, m_image}, &device)) {
        return false;
    }
    const bool mounted = run(u"mount.exfat-fuse"_s, {device, m_folder});
    run(u"losetup"_s, {u"-d"_s, device}); // as soon as nobody uses it
    return mounted;
}

} // namespace lapsa::test
