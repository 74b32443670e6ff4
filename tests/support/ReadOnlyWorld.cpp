// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ReadOnlyWorld.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace lapsa::test {

namespace {

bool entered = false;

bool writeFile(const char* path, const QByteArray& text)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size();
}

/// A mount namespace of our own; without being root that takes a user namespace as well.
bool leaveTheCommonMounts()
{
    const QByteArray user = QByteArray::number(::geteuid());
    const QByteArray group = QByteArray::number(::getegid());
    if (::geteuid() == 0) {
        return ::unshare(CLONE_NEWNS) == 0;
    }
    return ::unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && writeFile("/proc/self/setgroups", "deny") &&
           writeFile("/proc/self/uid_map", user + ' ' + user + " 1") &&
           writeFile("/proc/self/gid_map", group + ' ' + group + " 1");
}

#ifdef LAPSA_COVERAGE_FOLDER

/// Where the counts of executed lines are written at the end of the process.
constexpr const char* countsFolder = LAPSA_COVERAGE_FOLDER;

#else

constexpr const char* countsFolder = nullptr;

#endif

/// A mount of the folder itself, which can stay writable by itself.
bool mountOnItself(const char* folder)
{
    return folder == nullptr || ::mount(folder, folder, nullptr, MS_BIND, nullptr) == 0;
}

bool setReadOnly(const char* path, unsigned flags, bool readOnly)
{
    mount_attr attributes{};
    (readOnly ? attributes.attr_set : attributes.attr_clr) = MOUNT_ATTR_RDONLY;
    return ::mount_setattr(AT_FDCWD, path, flags, &attributes, sizeof attributes) == 0;
}

} // namespace

bool enterReadOnlyWorld()
{
    if (!leaveTheCommonMounts()) {
        return false;
    }
    // A folder that every system has and that no test needs; nothing of the mount is left outside.
    constexpr auto folder = "/mnt";
    entered = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              ::mount("lapsa-test", folder, "tmpfs", 0, "mode=0700") == 0 && mountOnItself(countsFolder) &&
              setReadOnly("/", AT_RECURSIVE, true) && setReadOnly(folder, 0, false) &&
              (countsFolder == nullptr || setReadOnly(countsFolder, 0, false));
    if (entered) {
        qputenv("TMPDIR", folder);
    }
    return entered;
}

bool inReadOnlyWorld()
{
    return entered;
}

} // namespace lapsa::test
