// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ReadOnlyWorld.h"

#include <QByteArray>
#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cstdlib>

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

bool setReadOnly(const char* path, unsigned flags, bool readOnly)
{
    mount_attr attributes{};
    (readOnly ? attributes.attr_set : attributes.attr_clr) = MOUNT_ATTR_RDONLY;
    return ::mount_setattr(AT_FDCWD, path, flags, &attributes, sizeof attributes) == 0;
}

} // namespace

bool enterReadOnlyWorld()
{
    QByteArray folder = QDir::tempPath().toUtf8() + "/lapsa-world-XXXXXX";
    if (!leaveTheCommonMounts() || ::mkdtemp(folder.data()) == nullptr) {
        return false;
    }
    entered = ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              ::mount("lapsa-test", folder.constData(), "tmpfs", 0, "mode=0700") == 0 &&
              setReadOnly("/", AT_RECURSIVE, true) && setReadOnly(folder.constData(), 0, false);
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
