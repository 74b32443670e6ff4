// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileAttributes.h"

#include "AtPath.h"
#include "CopyMark.h"
#include "FileDescriptor.h"

#include <QList>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/xattr.h>

namespace lapsa {

namespace {

constexpr const char* accessList = "system.posix_acl_access";
constexpr const char* defaultAccessList = "system.posix_acl_default";

/// Reads all that `read(buffer, size)` returns: asks for the length first, which may grow before the reading.
template <typename Read>
int readWhole(Read read, QByteArray& bytes)
{
    for (;;) {
        const ssize_t length = read(nullptr, 0);
        if (length < 0) {
            return errno;
        }
        bytes.resize(length);
        const ssize_t got = length == 0 ? 0 : read(bytes.data(), std::size_t(bytes.size()));
        if (got >= 0) {
            bytes.truncate(got);
            return 0;
        }
        if (errno != ERANGE) {
            return errno;
        }
    }
}

/// Labels and capabilities belong to the administrator: they are left behind if this user may not set them. Attributes
/// that the user set must not get lost.
bool mayBeLeftBehind(const QByteArray& name, int error)
{
    const bool ofTheUser = name.startsWith("user.") || name.startsWith("system.posix_acl_");
    return error == EOPNOTSUPP || error == ENODATA ||
           (!ofTheUser && (error == EPERM || error == EACCES || error == EINVAL));
}

int copyExtendedAttribute(const QByteArray& from, const QByteArray& to, const QByteArray& name)
{
    QByteArray value;
    int error = readWhole(
        [&](char* buffer, std::size_t size) { return ::getxattr(from.constData(), name.constData(), buffer, size); },
        value);
    if (error == 0) {
        error = errorOf([&] {
            return ::setxattr(to.constData(), name.constData(), value.constData(), std::size_t(value.size()), 0);
        });
    }
    return mayBeLeftBehind(name, error) ? 0 : error;
}

int copyExtendedAttributes(int from, int to)
{
    const QByteArray fromPath = procPath(from);
    const QByteArray toPath = procPath(to);
    QByteArray names;
    const int error = readWhole(
        [&](char* buffer, std::size_t size) { return ::listxattr(fromPath.constData(), buffer, size); }, names);
    if (error != 0) {
        return error == EOPNOTSUPP ? 0 : error;
    }
    for (const QByteArray& name : names.split('\0')) {
        // A mark of an earlier copy says nothing about this one.
        if (const int failed = name.isEmpty() || name == copyMark ? 0 : copyExtendedAttribute(fromPath, toPath, name)) {
            return failed;
        }
    }
    return 0;
}

/// Returns whether the owner was kept.
bool copyOwner(int to, const struct statx& status)
{
    if (::fchownat(to, "", status.stx_uid, status.stx_gid, AT_EMPTY_PATH) == 0) {
        return true;
    }
    // Only the administrator may give files away, but the user may be in the group.
    constexpr auto unchanged = static_cast<uid_t>(-1);
    const bool groupKept = ::fchownat(to, "", unchanged, status.stx_gid, AT_EMPTY_PATH) == 0;
    return groupKept && status.stx_uid == ::geteuid();
}

/// Copies the project number, by which quotas group files. A number that the destination gives to its files stays: its
/// quota must not be evaded. Not every file system has project numbers, and not every user may set them.
void copyProject(int from, int to)
{
    fsxattr source = {};
    fsxattr copy = {};
    if (::ioctl(from, FS_IOC_FSGETXATTR, &source) != 0 || source.fsx_projid == 0 ||
        ::ioctl(to, FS_IOC_FSGETXATTR, &copy) != 0 || copy.fsx_projid != 0) {
        return;
    }
    copy.fsx_projid = source.fsx_projid;
    copy.fsx_xflags |= source.fsx_xflags & FS_XFLAG_PROJINHERIT;
    ::ioctl(to, FS_IOC_FSSETXATTR, &copy);
}

timespec timeOf(const struct statx_timestamp& time)
{
    return {.tv_sec = time.tv_sec, .tv_nsec = time.tv_nsec};
}

} // namespace

int copyAttributes(int from, int to, const struct statx& status)
{
    const bool ownerKept = copyOwner(to, status);
    if (const int error = copyExtendedAttributes(from, to)) {
        return error;
    }
    if (S_ISREG(status.stx_mode) || S_ISDIR(status.stx_mode)) {
        copyProject(from, to);
    }
    if (!S_ISLNK(status.stx_mode)) {
        // A program must not run with the rights of somebody who never owned it.
        const mode_t mode = status.stx_mode & (ownerKept ? 07777U : 01777U);
        const int refused = errorOf([&] { return ::chmod(procPath(to).constData(), mode); });
        if (const int error = unlessNoModesAreKept(refused)) {
            return error;
        }
    }
    const timespec times[] = {timeOf(status.stx_atime), timeOf(status.stx_mtime)};
    return errorOf([&] { return ::utimensat(to, "", times, AT_EMPTY_PATH); });
}

void dropInheritedAccessLists(int file)
{
    const QByteArray path = procPath(file);
    ::removexattr(path.constData(), accessList);
    ::removexattr(path.constData(), defaultAccessList);
}

} // namespace lapsa
