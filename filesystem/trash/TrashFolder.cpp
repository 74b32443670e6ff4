// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrashFolder.h"

#include "FileSystem.h"
#include "SystemCalls.h"
#include "UserFolders.h"

#include <fcntl.h>
#include <unistd.h>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

Result<FileDescriptor> openFolder(int folder, const char* name)
{
    return openAt(folder, name, O_PATH | O_DIRECTORY | O_NOFOLLOW);
}

/// A folder, not a link, that the user owns; created if missing. Anything else could be somebody else's trap.
Result<FileDescriptor> ownFolder(int folder, const char* name)
{
    const int error = errorOf([&] { return ::mkdirat(folder, name, 0700); });
    if (error != 0 && error != EEXIST) {
        return FileError::fromErrno(error);
    }
    Result<FileDescriptor> own = openFolder(folder, name);
    if (!own) {
        return own.error().code == ELOOP ? FileError::fromErrno(ENOTDIR) : own.error();
    }
    const Result<struct statx> status = statAt(own.value().get(), "", STATX_UID);
    if (!status || status.value().stx_uid != ::geteuid()) {
        return FileError::fromErrno(EACCES);
    }
    return own;
}

bool isMountRoot(int folder)
{
    const Result<struct statx> status = statAt(folder, "", STATX_INO);
    return !status || (status.value().stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

bool isRoot(int folder)
{
    const Result<struct statx> here = statAt(folder, "", STATX_INO);
    const Result<struct statx> root = statAt(AT_FDCWD, "/", STATX_INO);
    return !here || !root || identityOf(here.value()) == identityOf(root.value());
}

/// The top folder of the mount that a folder is on.
Result<FileDescriptor> volumeTop(int folder)
{
    Result<FileDescriptor> top = openFolder(folder, ".");
    while (top && !isMountRoot(top.value().get()) && !isRoot(top.value().get())) {
        top = openFolder(top.value().get(), "..");
    }
    return top;
}

/// The trash that the administrator set up for all users of a volume, if there is a usable one. If anybody else created
/// it, they could lock the user out of the trashed entries.
Result<FileDescriptor> sharedTrash(int top, const QByteArray& user)
{
    const Result<FileDescriptor> shared = openFolder(top, ".Trash");
    if (!shared) {
        return shared.error();
    }
    const Result<struct statx> volume = statAt(top, "", STATX_UID);
    const Result<struct statx> status = statAt(shared.value().get(), "", STATX_MODE | STATX_UID);
    if (!volume || !status || (status.value().stx_mode & S_ISVTX) == 0) {
        return FileError::fromErrno(EACCES);
    }
    const uid_t owner = status.value().stx_uid;
    if (owner != 0 && owner != volume.value().stx_uid) {
        return FileError::fromErrno(EACCES);
    }
    return ownFolder(shared.value().get(), user.constData());
}

} // namespace

Result<TrashFolder> TrashFolder::home()
{
    const QStringList dataHomes = userFolders::applicationSupport();
    if (dataHomes.isEmpty()) {
        return FileError::fromErrno(ENOENT);
    }
    const QString path = dataHomes.first() + u"/Trash"_s;
    const Result<void> made = fileSystem::createDirectory(path, fileSystem::Access::OwnerOnly);
    if (!made) {
        return made.error();
    }
    const Result<QByteArray> bytes = pathBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    // Follows a link: the user may keep the whole trash elsewhere.
    const Result<FileDescriptor> folder = openAt(AT_FDCWD, bytes.value().constData(), O_PATH | O_DIRECTORY);
    return folder ? opened(folder.value()) : folder.error();
}

Result<TrashFolder> TrashFolder::ofVolume(const AtPath& place)
{
    const Result<FileDescriptor> top = volumeTop(place.folder.get());
    if (!top) {
        return top.error();
    }
    const Result<QByteArray> topPath = realPath(top.value().get());
    if (!topPath) {
        return topPath.error();
    }
    const QByteArray user = QByteArray::number(::geteuid());
    Result<FileDescriptor> folder = sharedTrash(top.value().get(), user);
    if (!folder) {
        folder = ownFolder(top.value().get(), (".Trash-" + user).constData());
    }
    if (!folder) {
        return folder.error();
    }
    Result<TrashFolder> trash = opened(folder.value());
    if (!trash) {
        return trash.error();
    }
    TrashFolder found = std::move(trash).value();
    found.m_top = topPath.value();
    return found;
}

Result<TrashFolder> TrashFolder::opened(const FileDescriptor& folder)
{
    Result<FileDescriptor> files = ownFolder(folder.get(), "files");
    if (!files) {
        return files.error();
    }
    Result<FileDescriptor> info = ownFolder(folder.get(), "info");
    if (!info) {
        return info.error();
    }
    const auto filesStatus = statAt(files.value().get(), "", STATX_INO | STATX_MNT_ID);
    const auto infoStatus = statAt(info.value().get(), "", STATX_INO);
    const auto filesPath = realPath(files.value().get());
    const auto infoPath = realPath(info.value().get());
    if (!filesStatus || !infoStatus || !filesPath || !infoPath) {
        return FileError::fromErrno(EACCES);
    }
    TrashFolder trash;
    trash.m_inFiles.folder = SharedDescriptor(std::move(files).value());
    trash.m_filesStatus = filesStatus.value();
    trash.m_filesPath = filesPath.value() + '/';
    trash.m_info = std::move(info).value();
    trash.m_infoIdentity = identityOf(infoStatus.value());
    trash.m_infoPath = infoPath.value() + '/';
    return trash;
}

bool TrashFolder::isOnMountOf(const struct statx& status) const
{
    if ((status.stx_mask & m_filesStatus.stx_mask & STATX_MNT_ID) != 0) {
        return status.stx_mnt_id == m_filesStatus.stx_mnt_id;
    }
    return identityOf(status).device == identityOf(m_filesStatus).device;
}

bool TrashFolder::contains(const QByteArray& folder, const AtPath& place, const struct statx& status) const
{
    const QByteArray above = folder == "/" ? folder : folder + '/';
    if (above.startsWith(m_infoPath)) {
        return true;
    }
    if (!isFolder(status)) {
        return false;
    }
    const QByteArray entry = above + place.name + '/';
    return m_infoPath.startsWith(entry) || m_filesPath.startsWith(entry);
}

} // namespace lapsa
