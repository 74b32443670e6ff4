// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrashFolder.h"

#include "FileSystem.h"
#include "TrashName.h"
#include "UserFolders.h"

#include <QDateTime>
#include <QUrl>

#include <fcntl.h>
#include <unistd.h>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

FileDescriptor openedFolder(int folder, const char* name)
{
    return FileDescriptor(
        retrying([&] { return ::openat(folder, name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }));
}

/// A folder of the user's own, no link, made where it is missing: anything else could be a trap laid by somebody else.
Result<FileDescriptor> ownFolder(int folder, const char* name)
{
    const int error = errorOf([&] { return ::mkdirat(folder, name, 0700); });
    if (error != 0 && error != EEXIST) {
        return FileError::fromErrno(error);
    }
    FileDescriptor own = openedFolder(folder, name);
    if (!own) {
        return FileError::fromErrno(errno == ELOOP ? ENOTDIR : errno);
    }
    const Result<struct statx> status = look(own.get(), "", STATX_UID);
    if (!status || status.value().stx_uid != ::geteuid()) {
        return FileError::fromErrno(EACCES);
    }
    return own;
}

bool isMountRoot(int folder)
{
    const Result<struct statx> status = look(folder, "", STATX_INO);
    return !status || (status.value().stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

bool isRoot(int folder)
{
    const Result<struct statx> here = look(folder, "", STATX_INO);
    const Result<struct statx> root = look(AT_FDCWD, "/", STATX_INO);
    return !here || !root || identityOf(here.value()) == identityOf(root.value());
}

/// The top folder of the mount that holds a folder.
Result<FileDescriptor> volumeTop(int folder)
{
    FileDescriptor top = openedFolder(folder, ".");
    while (top && !isMountRoot(top.get()) && !isRoot(top.get())) {
        top = openedFolder(top.get(), "..");
    }
    if (!top) {
        return FileError::fromErrno(errno);
    }
    return top;
}

/// The trash that the administrator set up for all users of a volume, if there is a usable one.
Result<FileDescriptor> sharedTrash(int top, const QByteArray& user)
{
    const FileDescriptor shared = openedFolder(top, ".Trash");
    if (!shared) {
        return FileError::fromErrno(errno);
    }
    const Result<struct statx> status = look(shared.get(), "", STATX_MODE);
    if (!status || (status.value().stx_mode & S_ISVTX) == 0) {
        return FileError::fromErrno(EACCES);
    }
    return ownFolder(shared.get(), user.constData());
}

int writeRecord(int file, QByteArrayView record)
{
    while (!record.isEmpty()) {
        const ssize_t written = retrying([&] { return ::write(file, record.data(), std::size_t(record.size())); });
        if (written <= 0) {
            return written == 0 ? EIO : errno;
        }
        record = record.sliced(written);
    }
    return 0;
}

/// Has the record's bytes written before the file follows, so that a power cut never leaves the file with an empty
/// record: what a journal commits is in order, and the bytes are then there first. Far cheaper than waiting for the
/// journal too.
int writeOut(int file)
{
    constexpr unsigned all = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    const int error = errorOf([&] { return ::sync_file_range(file, 0, 0, all); });
    const bool unknown = error == ENOSYS || error == ESPIPE || error == EINVAL || error == EOPNOTSUPP;
    return unknown ? errorOf([&] { return ::fdatasync(file); }) : error;
}

/// Makes a record under a name that must be free.
int makeRecord(int folder, const QByteArray& name, QByteArrayView record)
{
    FileDescriptor file(retrying([&] {
        return ::openat(folder, name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    }));
    if (!file) {
        return errno;
    }
    int error = writeRecord(file.get(), record);
    if (error == 0) {
        error = writeOut(file.get());
    }
    const int closing = file.close();
    error = error != 0 ? error : closing;
    if (error != 0) {
        ::unlinkat(folder, name.constData(), 0);
    }
    return error;
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
    // A link is followed here: the user may keep the whole trash elsewhere.
    return opened(
        FileDescriptor(retrying([&] { return ::open(bytes.value().constData(), O_PATH | O_DIRECTORY | O_CLOEXEC); })));
}

Result<TrashFolder> TrashFolder::ofVolume(const Place& place)
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
    Result<TrashFolder> trash = opened(std::move(folder).value());
    if (!trash) {
        return trash.error();
    }
    TrashFolder found = std::move(trash).value();
    found.m_top = topPath.value();
    return found;
}

Result<TrashFolder> TrashFolder::opened(FileDescriptor folder)
{
    if (!folder) {
        return FileError::fromErrno(errno);
    }
    Result<FileDescriptor> files = ownFolder(folder.get(), "files");
    if (!files) {
        return files.error();
    }
    Result<FileDescriptor> info = ownFolder(folder.get(), "info");
    if (!info) {
        return info.error();
    }
    TrashFolder trash;
    trash.m_folder = std::move(folder);
    trash.m_files = std::move(files).value();
    trash.m_info = std::move(info).value();
    return trash;
}

bool TrashFolder::isOnDevice(std::uint64_t device) const
{
    const Result<struct statx> status = look(m_files.get(), "", STATX_INO);
    return status && identityOf(status.value()).device == device;
}

bool TrashFolder::contains(const Place& place, const struct statx& status) const
{
    const Result<QByteArray> folder = realPath(place.folder.get());
    const Result<QByteArray> info = realPath(m_info.get());
    const Result<QByteArray> files = realPath(m_files.get());
    if (!folder || !info || !files) {
        return true;
    }
    if ((folder.value() + '/').startsWith(info.value() + '/')) {
        return true;
    }
    const QByteArray entry = (folder.value() == "/" ? QByteArray() : folder.value()) + '/' + place.name + '/';
    return isFolder(status) && ((info.value() + '/').startsWith(entry) || (files.value() + '/').startsWith(entry));
}

int TrashFolder::take(const Place& place, const FileIdentity& identity) const
{
    const Result<QByteArray> record = recordOf(place);
    if (!record) {
        return record.error().code;
    }
    const Result<struct statx> trash = look(m_info.get(), "", STATX_INO);
    if (!trash) {
        return trash.error().code;
    }
    TrashName name(identityOf(trash.value()), place.name);
    int error = takeAs(place, identity, name.current(), record.value());
    while (error == EEXIST) {
        name.advance();
        error = takeAs(place, identity, name.current(), record.value());
    }
    if (error == 0) {
        name.remember();
    }
    return error;
}

Result<QByteArray> TrashFolder::recordOf(const Place& place) const
{
    const Result<QByteArray> folder = realPath(place.folder.get());
    if (!folder) {
        return folder.error();
    }
    QByteArray path = (folder.value() == "/" ? QByteArray() : folder.value()) + '/' + place.name;
    if (!m_top.isEmpty()) {
        path = path.sliced(m_top == "/" ? 1 : m_top.size() + 1);
    }
    // Local time without a zone: so the rules want it.
    const QByteArray date = QDateTime::currentDateTime().toString(u"yyyy-MM-ddTHH:mm:ss"_s).toLatin1();
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate=" + date + '\n';
}

int TrashFolder::takeAs(const Place& place, const FileIdentity& identity, const QByteArray& name,
                        const QByteArray& record) const
{
    const QByteArray recordName = name + ".trashinfo";
    if (const int error = makeRecord(m_info.get(), recordName, record)) {
        return error;
    }
    const Place inTrash{.folder = FileDescriptor(::fcntl(m_files.get(), F_DUPFD_CLOEXEC, 0)), .name = name};
    int error = inTrash.folder ? renameWithoutReplacing(place, inTrash) : errno;
    if (error != 0 && inTrash.folder && hasArrived(place, identity, inTrash)) {
        error = 0;
    }
    if (error != 0) {
        ::unlinkat(m_info.get(), recordName.constData(), 0);
    }
    return error;
}

} // namespace lapsa
