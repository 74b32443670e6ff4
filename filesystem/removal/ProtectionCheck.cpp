// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ProtectionCheck.h"

#include "FileSystem.h"
#include "MountTable.h"
#include "SystemCalls.h"
#include "UserFolders.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <tuple>
#include <utility>

namespace lapsa {

using fileSystem::Refusal;

namespace {

/// A protected folder, with the refusals for itself and for the folders above it.
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
    if (protection.folder.isEmpty()) {
        return folders;
    }
    const auto add = [&](const QString& path) {
        folders.push_back({.path = path, .itself = Refusal::ProtectedFolder, .above = Refusal::HoldsProtectedFolder});
    };
    add(protection.folder);
    // If it cannot be listed, there is nothing to add.
    std::ignore = fileSystem::forEachName(protection.folder, [&](const QString& name) {
        const QString path = protection.folder + u'/' + name;
        if (fileSystem::isDirectory(path)) {
            add(path);
        }
    });
    return folders;
}

/// None if it cannot be opened, for whatever reason.
FileDescriptor openedFolder(int folder, const char* path)
{
    Result<FileDescriptor> opened = openAt(folder, path, O_PATH | O_DIRECTORY);
    return opened ? std::move(opened).value() : FileDescriptor();
}

/// The folder itself or, if it does not exist, the nearest existing folder above it.
FileDescriptor openedOrAbove(QByteArray path)
{
    FileDescriptor folder = openedFolder(AT_FDCWD, path.constData());
    while (!folder && path.size() > 1) {
        path.truncate(std::max<qsizetype>(1, path.lastIndexOf('/')));
        folder = openedFolder(AT_FDCWD, path.constData());
    }
    return folder;
}

/// Whether a folder is `suspect` or is below it. True if a folder cannot be checked.
bool isOrLiesBelow(FileDescriptor folder, const FileIdentity& suspect)
{
    std::optional<FileIdentity> below;
    while (folder) {
        const Result<struct statx> status = statAt(folder.get(), "", STATX_INO);
        if (!status || identityOf(status.value()) == suspect) {
            return true;
        }
        if (below == identityOf(status.value())) {
            return false; // "/" is its own parent
        }
        below = identityOf(status.value());
        folder = openedFolder(folder.get(), "..");
    }
    return true;
}

bool is(const FileIdentity& suspect, const QByteArray& path)
{
    const FileDescriptor folder = openedFolder(AT_FDCWD, path.constData());
    const Result<struct statx> found = statAt(folder.get(), "", STATX_INO);
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

/// Follows a path from link to link, as the kernel would.
class LinksOnTheWay final
{
public:
    explicit LinksOnTheWay(const FileIdentity& wanted)
        : m_wanted(wanted)
    {}

    enum class Found
    {
        No,
        OnTheWay,
        AtTheEnd,
    };

    [[nodiscard]] Found lookAlong(const QByteArray& path)
    {
        for (qsizetype end = 0; end < path.size();) {
            const qsizetype slash = path.indexOf('/', end + 1);
            end = slash < 0 ? path.size() : slash;
            const QByteArray part = path.first(end);
            const Result<struct statx> found = statAt(AT_FDCWD, part.constData(), STATX_TYPE | STATX_INO);
            if (!found || !S_ISLNK(found.value().stx_mode)) {
                continue;
            }
            const bool last = end == path.size();
            if (identityOf(found.value()) == m_wanted) {
                return last ? Found::AtTheEnd : Found::OnTheWay;
            }
            constexpr int mostLinks = 40; // as many as the kernel follows
            const Found behind = ++m_links > mostLinks ? Found::No : lookAlong(targetOf(part));
            if (behind != Found::No) {
                return last ? behind : Found::OnTheWay;
            }
        }
        return Found::No;
    }

private:
    static QByteArray targetOf(const QByteArray& link)
    {
        const Result<QByteArray> read = readLinkAt(AT_FDCWD, link.constData());
        const QByteArray target = read ? read.value() : QByteArray();
        return target.startsWith('/') ? target : link.first(link.lastIndexOf('/') + 1) + target;
    }

    FileIdentity m_wanted;
    int m_links = 0;
};

/// Without the link, a protected folder may be unreachable.
std::optional<Refusal> refusalOfLink(const struct statx& status, const fileSystem::Protection& protection)
{
    using Found = LinksOnTheWay::Found;
    for (const ProtectedFolder& folder : protectedFolders(protection)) {
        const Result<QByteArray> path = pathBytes(folder.path);
        const Found found = path ? LinksOnTheWay(identityOf(status)).lookAlong(path.value()) : Found::No;
        if (found != Found::No) {
            return found == Found::AtTheEnd ? folder.itself : folder.above;
        }
    }
    return std::nullopt;
}

/// Whether something is mounted below a folder. Takes the folder's real path from the open folder.
Result<bool> holdsMount(const AtPath& place, const struct statx& status)
{
    const Result<FileDescriptor> folder =
        openAt(place.folder.get(), place.name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (!folder) {
        return folder.error();
    }
    const Result<struct statx> opened = statAt(folder.value().get(), "", STATX_INO);
    if (!opened || identityOf(opened.value()) != identityOf(status)) {
        return FileError::fromErrno(EBUSY);
    }
    const Result<QByteArray> path = realPath(folder.value().get());
    if (!path) {
        return path.error();
    }
    return hasMountBelow(path.value());
}

} // namespace

Result<std::optional<Refusal>> refusalAt(const AtPath& place, const struct statx& status,
                                         const fileSystem::Protection& protection)
{
    if (S_ISLNK(status.stx_mode)) {
        return refusalOfLink(status, protection);
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

int checkUnprotected(const AtPath& place, const struct statx& status, const fileSystem::Protection& protection)
{
    const Result<std::optional<Refusal>> refusal = refusalAt(place, status, protection);
    if (!refusal) {
        return refusal.error().code;
    }
    return refusal.value() ? EPERM : 0;
}

} // namespace lapsa
