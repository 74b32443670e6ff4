// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FaultWorld.h"

#include "Privileges.h"

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

bool mountTemporary(const QString& place)
{
    return ::mount("tmpfs", place.toUtf8().constData(), "tmpfs", MS_NODEV, "size=64m,mode=0700") == 0;
}

void makeFolder(const QString& path)
{
    if (::mkdir(path.toUtf8().constData(), 0700) != 0 && errno != EEXIST) {
        qFatal("cannot make %s", qPrintable(path));
    }
}

void empty(const QString& folder)
{
    std::error_code ignored; // what stays is met by the next preparation
    for (const auto& entry : std::filesystem::directory_iterator(folder.toStdString(), ignored)) {
        std::filesystem::remove_all(entry.path(), ignored);
    }
}

/// Root inside a namespace of one's own, the same user as before outside.
bool enterUserNamespace()
{
    const uid_t user = ::geteuid();
    const gid_t group = ::getegid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
    return true;
}

} // namespace

bool enterPrivateMounts()
{
    const bool entered = ::geteuid() == 0 ? ::unshare(CLONE_NEWNS) == 0 : enterUserNamespace();
    return entered && ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

FaultWorld::FaultWorld(const QString& folder)
    : m_folder(folder.toUtf8() + "/lapsa-faults-XXXXXX")
{
    if (::mkdtemp(m_folder.data()) == nullptr) {
        qFatal("no folder in %s", qPrintable(folder));
    }
    m_home = QString::fromUtf8(m_folder) + u"/home"_s;
    m_volume = QString::fromUtf8(m_folder) + u"/volume"_s;
    makeFolder(m_home);
    makeFolder(m_volume);
    m_mounted = mountTemporary(m_home) && mountTemporary(m_volume);
    qputenv("HOME", m_home.toUtf8());
    qputenv("XDG_DATA_HOME", (m_home + u"/.local/share"_s).toUtf8());
    qputenv("XDG_STATE_HOME", (m_home + u"/.local/state"_s).toUtf8());
}

FaultWorld::~FaultWorld()
{
    clear();
    if (m_mounted) {
        ::umount2(m_home.toUtf8().constData(), MNT_DETACH);
        ::umount2(m_volume.toUtf8().constData(), MNT_DETACH);
    }
    ::rmdir(m_home.toUtf8().constData());
    ::rmdir(m_volume.toUtf8().constData());
    ::rmdir(m_folder.constData());
}

void FaultWorld::becomeOrdinaryUser() const
{
    clear();
    const bool left = ::chown(m_folder.constData(), ordinaryUser, ordinaryUser) == 0 &&
                      ::chown(m_home.toUtf8().constData(), ordinaryUser, ordinaryUser) == 0 &&
                      ::chown(m_volume.toUtf8().constData(), ordinaryUser, ordinaryUser) == 0 &&
                      ::setgroups(0, nullptr) == 0 && ::setgid(ordinaryUser) == 0 && ::setuid(ordinaryUser) == 0;
    // Without the last, nobody but root may look into this process's children.
    if (!left || ::prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) != 0) {
        qFatal("cannot become an ordinary user");
    }
}

void FaultWorld::clear() const
{
    empty(m_home);
    empty(m_volume);
}

void FaultWorld::resize(const QString& place, const QByteArray& size) const
{
    const QByteArray options = "size=" + size;
    if (::mount(nullptr, place.toUtf8().constData(), nullptr, MS_REMOUNT | MS_NODEV, options.constData()) != 0) {
        qFatal("cannot change the size of %s", qPrintable(place));
    }
}

} // namespace lapsa::test
