// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Privileges.h"

#include <QDir>

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace lapsa::test {

namespace {

void check(int result, const char* what)
{
    if (result != 0) {
        qFatal("%s: %s", what, qPrintable(qt_error_string(errno)));
    }
}

/// A temporary folder that stands in the place of everybody's, so that no mistake of a test, with its mounts and as
/// root, can reach what belongs to others. Removed when the process ends.
class OwnTemporaryFolder final
{
public:
    OwnTemporaryFolder()
    {
        m_available = ::geteuid() == 0 && ::mkdtemp(m_path.data()) != nullptr &&
                      ::chmod(m_path.constData(), 01777) == 0 && ::unshare(CLONE_NEWNS) == 0 &&
                      ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                      ::mount(m_path.constData(), m_place.constData(), nullptr, MS_BIND, nullptr) == 0;
    }

    OwnTemporaryFolder(const OwnTemporaryFolder&) = delete;
    OwnTemporaryFolder& operator=(const OwnTemporaryFolder&) = delete;

    ~OwnTemporaryFolder()
    {
        if (m_available && ::getpid() == m_process && ::umount2(m_place.constData(), MNT_DETACH) == 0) {
            ::rmdir(m_path.constData()); // what a test left in it stays, and is seen
        }
    }

    [[nodiscard]] bool available() const { return m_available; }

private:
    QByteArray m_place = QDir::tempPath().toUtf8();
    QByteArray m_path = m_place + "/lapsa-mounts-XXXXXX";
    pid_t m_process = ::getpid();
    bool m_available = false;
};

bool ownMounts()
{
    static const OwnTemporaryFolder folder;
    return folder.available();
}

} // namespace

bool PrivateMounts::available()
{
    return ownMounts();
}

PrivateMounts::PrivateMounts()
{
    if (!available()) {
        qFatal("no mounts without root");
    }
}

PrivateMounts::~PrivateMounts()
{
    while (!m_mounted.isEmpty()) {
        ::umount2(m_mounted.takeLast().toUtf8().constData(), MNT_DETACH);
    }
}

void PrivateMounts::mountTemporary(const QString& folder, const QByteArray& options)
{
    QDir().mkpath(folder);
    mount("tmpfs", folder, options);
}

void PrivateMounts::mount(const QByteArray& kind, const QString& folder, const QByteArray& options)
{
    check(::mount(kind.constData(), folder.toUtf8().constData(), kind.constData(), 0, options.constData()), "mount");
    m_mounted.push_back(folder);
}

void PrivateMounts::bind(const QString& from, const QString& to)
{
    check(::mount(from.toUtf8().constData(), to.toUtf8().constData(), nullptr, MS_BIND, nullptr), "bind");
    m_mounted.push_back(to);
}

void PrivateMounts::makeReadOnly(const QString& mountPoint)
{
    check(::mount(nullptr, mountPoint.toUtf8().constData(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr),
          "remount");
}

void PrivateMounts::unmount(const QString& mountPoint)
{
    check(::umount2(mountPoint.toUtf8().constData(), MNT_DETACH), "umount");
    m_mounted.removeAll(mountPoint);
}

int asOrdinaryUser(const std::function<int()>& work)
{
    return asUser(ordinaryUser, work);
}

int asUser(unsigned user, const std::function<int()>& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const bool dropped = ::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0;
        ::_exit(dropped ? work() : 255);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(status)) {
        qFatal("the other user's process died");
    }
    return WEXITSTATUS(status);
}

void giveToOrdinaryUser(const QString& path)
{
    giveTo(ordinaryUser, path);
}

void giveTo(unsigned user, const QString& path)
{
    check(::lchown(path.toUtf8().constData(), user, user), "lchown");
}

} // namespace lapsa::test
