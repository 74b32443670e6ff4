// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ProtectionCheck.h"

#include "MountTable.h"
#include "UserFolders.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace lapsa {

namespace {

QStringList protectedFolders(const fileSystem::Protection& protection)
{
    QStringList folders = userFolders::home();
    if (!protection.folder.isEmpty()) {
        folders.push_back(protection.folder);
    }
    return folders;
}

FileDescriptor openedFolder(int folder, const char* path, int flags)
{
    return FileDescriptor(retrying([&] { return ::openat(folder, path, O_PATH | O_DIRECTORY | O_CLOEXEC | flags); }));
}

/// The folder itself; where there is none, the lowest one above it that there is.
FileDescriptor openedOrAbove(QByteArray path)
{
    FileDescriptor folder = openedFolder(AT_FDCWD, path.constData(), 0);
    while (!folder && path.size() > 1) {
        path.truncate(std::max<qsizetype>(1, path.lastIndexOf('/')));
        folder = openedFolder(AT_FDCWD, path.constData(), 0);
    }
    return folder;
}

/// Whether a folder is `suspect` or lies below it. A folder that cannot be looked at counts as if it were.
bool isOrLiesBelow(FileDescriptor folder, const FileIdentity& suspect)
{
    std::optional<FileIdentity> below;
    while (folder) {
        const Result<struct statx> status = look(folder.get(), "", STATX_INO);
        if (!status || identityOf(status.value()) == suspect) {
            return true;
        }
        if (below == identityOf(status.value())) {
            return false; // "/" is its own parent
        }
        below = identityOf(status.value());
        folder = openedFolder(folder.get(), "..", 0);
    }
    return true;
}

bool isProtectedFolder(const struct statx& status, const fileSystem::Protection& protection)
{
    const QStringList folders = protectedFolders(protection) << QStringLiteral("/");
    return std::ranges::any_of(folders, [&](const QString& folder) {
        const Result<QByteArray> path = pathBytes(folder);
        return path && isOrLiesBelow(openedOrAbove(path.value()), identityOf(status));
    });
}

/// Whether the link is a step on the way to a protected folder: without it the folder would be out of reach.
bool isProtectedLink(const Place& place, const struct statx& status, const fileSystem::Protection& protection)
{
    const QString name = nameText(place.name);
    const QStringList folders = protectedFolders(protection);
    return std::ranges::any_of(folders, [&](const QString& folder) {
        const QStringList steps = folder.split(u'/', Qt::SkipEmptyParts);
        QByteArray path;
        // The names are compared first: an ordinary link is not worth a look at the disk.
        return !name.isEmpty() && std::ranges::any_of(steps, [&](const QString& step) {
            path += '/' + step.toUtf8();
            const Result<struct statx> found = step == name ? look(AT_FDCWD, path.constData(), STATX_INO)
                                                            : FileError{.code = ENOENT, .description = {}};
            return found && identityOf(found.value()) == identityOf(status);
        });
    });
}

/// Whether something is mounted below a folder. The folder's real path is looked up on the folder opened for it.
Result<bool> holdsMount(const Place& place, const struct statx& status)
{
    const FileDescriptor folder = openedFolder(place.folder.get(), place.name.constData(), O_NOFOLLOW);
    if (!folder) {
        return FileError::fromErrno(errno);
    }
    const Result<struct statx> opened = look(folder.get(), "", STATX_INO);
    if (!opened || identityOf(opened.value()) != identityOf(status)) {
        return FileError::fromErrno(EBUSY);
    }
    const Result<QByteArray> path = realPath(folder.get());
    if (!path) {
        return path.error();
    }
    return hasMountBelow(path.value());
}

} // namespace

int checkUnprotected(const Place& place, const struct statx& status, const fileSystem::Protection& protection)
{
    if ((status.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
        return EPERM;
    }
    if (S_ISLNK(status.stx_mode)) {
        return isProtectedLink(place, status, protection) ? EPERM : 0;
    }
    if (!isFolder(status)) {
        return 0;
    }
    if (isProtectedFolder(status, protection)) {
        return EPERM;
    }
    const Result<bool> mountBelow = holdsMount(place, status);
    if (!mountBelow) {
        return mountBelow.error().code;
    }
    return mountBelow.value() ? EPERM : 0;
}

} // namespace lapsa
