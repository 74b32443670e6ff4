// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ProtectionCheck.h"

#include "MountTable.h"
#include "Refusal.h"
#include "UserFolders.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace lapsa {

namespace {

using fileSystem::Refusal;

/// A folder that stays where it is, with what to say of itself and of what holds it.
struct ProtectedFolder
{
    QString path;
    Refusal itself;
    Refusal above;
};

QList<ProtectedFolder> protectedFolders(const fileSystem::Protection& protection)
{
    QList<ProtectedFolder> folders;
    for (const QString& home : userFolders::home()) {
        folders.push_back({.path = home, .itself = Refusal::Home, .above = Refusal::HoldsHome});
    }
    if (!protection.folder.isEmpty()) {
        folders.push_back(
            {.path = protection.folder, .itself = Refusal::ProtectedFolder, .above = Refusal::HoldsProtectedFolder});
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

bool is(const FileIdentity& suspect, const QByteArray& path)
{
    const FileDescriptor folder = openedFolder(AT_FDCWD, path.constData(), 0);
    const Result<struct statx> found = look(folder.get(), "", STATX_INO);
    return folder && found && identityOf(found.value()) == suspect;
}

std::optional<Refusal> refusalOfFolder(const struct statx& status, const fileSystem::Protection& protection)
{
    const FileIdentity suspect = identityOf(status);
    QList<ProtectedFolder> folders = protectedFolders(protection);
    folders.push_back({.path = QStringLiteral("/"), .itself = Refusal::Root, .above = Refusal::Root});
    std::optional<Refusal> above;
    for (const ProtectedFolder& folder : std::as_const(folders)) {
        const Result<QByteArray> path = pathBytes(folder.path);
        if (!path || !isOrLiesBelow(openedOrAbove(path.value()), suspect)) {
            continue;
        }
        if (is(suspect, path.value())) {
            return folder.itself;
        }
        above = above.value_or(folder.above);
    }
    if (isMountPoint(status)) {
        return Refusal::MountPoint;
    }
    return above;
}

/// Whether the link is a step on the way to a folder, and the last one.
std::optional<Refusal> refusalOnTheWay(const QString& name, const FileIdentity& link, const ProtectedFolder& folder)
{
    const QStringList steps = folder.path.split(u'/', Qt::SkipEmptyParts);
    QByteArray path;
    for (qsizetype i = 0; i < steps.size(); ++i) {
        path += '/' + steps[i].toUtf8();
        // The names are compared first: an ordinary link is not worth a look at the disk.
        if (steps[i] != name) {
            continue;
        }
        const Result<struct statx> found = look(AT_FDCWD, path.constData(), STATX_INO);
        if (found && identityOf(found.value()) == link) {
            return i + 1 == steps.size() ? folder.itself : folder.above;
        }
    }
    return std::nullopt;
}

/// Without the link a protected folder may be out of reach.
std::optional<Refusal> refusalOfLink(const Place& place, const struct statx& status,
                                     const fileSystem::Protection& protection)
{
    const QString name = nameText(place.name);
    if (name.isEmpty()) {
        return std::nullopt;
    }
    for (const ProtectedFolder& folder : protectedFolders(protection)) {
        if (const auto refusal = refusalOnTheWay(name, identityOf(status), folder)) {
            return refusal;
        }
    }
    return std::nullopt;
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

/// Costs nothing for what is no folder and no link. An error where it cannot be found out.
Result<std::optional<Refusal>> refusalAt(const Place& place, const struct statx& status,
                                         const fileSystem::Protection& protection)
{
    if (S_ISLNK(status.stx_mode)) {
        return refusalOfLink(place, status, protection);
    }
    if (!isFolder(status)) {
        return isMountPoint(status) ? std::optional(Refusal::MountPoint) : std::nullopt;
    }
    if (const auto refusal = refusalOfFolder(status, protection)) {
        return std::optional(refusal);
    }
    const Result<bool> mountBelow = holdsMount(place, status);
    if (!mountBelow) {
        return mountBelow.error();
    }
    return mountBelow.value() ? std::optional(Refusal::HoldsMountPoint) : std::nullopt;
}

} // namespace

int checkUnprotected(const Place& place, const struct statx& status, const fileSystem::Protection& protection)
{
    const Result<std::optional<Refusal>> refusal = refusalAt(place, status, protection);
    if (!refusal) {
        return refusal.error().code;
    }
    return refusal.value() ? EPERM : 0;
}

std::optional<Refusal> fileSystem::refusalOf(const QString& path, const Protection& protection)
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (bytes && bytes.value() == "/") {
        return Refusal::Root;
    }
    const Result<Place> place = openPlace(path);
    if (!place) {
        return std::nullopt;
    }
    const Result<struct statx> status =
        look(place.value().folder.get(), place.value().name.constData(), STATX_BASIC_STATS);
    if (!status) {
        return std::nullopt;
    }
    const Result<std::optional<Refusal>> refusal = refusalAt(place.value(), status.value(), protection);
    // Where it cannot be found out now: the one who moves or removes asks again.
    return refusal ? refusal.value() : std::nullopt;
}

} // namespace lapsa
