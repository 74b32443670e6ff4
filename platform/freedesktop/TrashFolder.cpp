// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrashFolder.h"

#include "FileSystem.h"
#include "HeldPlace.h"
#include "TrashName.h"
#include "UserFolders.h"

#include <QDateTime>
#include <QUrl>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

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

QByteArray pathOf(const QByteArray& folder, const Place& place)
{
    return (folder == "/" ? folder : folder + '/') + place.name;
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
    const auto filesStatus = look(files.value().get(), "", STATX_INO);
    const auto infoStatus = look(info.value().get(), "", STATX_INO);
    const auto filesPath = realPath(files.value().get());
    const auto infoPath = realPath(info.value().get());
    if (!filesStatus || !infoStatus || !filesPath || !infoPath) {
        return FileError::fromErrno(EACCES);
    }
    TrashFolder trash;
    trash.m_inFiles.folder = std::move(files).value();
    trash.m_filesIdentity = identityOf(filesStatus.value());
    trash.m_filesPath = filesPath.value() + '/';
    trash.m_info = std::move(info).value();
    trash.m_infoIdentity = identityOf(infoStatus.value());
    trash.m_infoPath = infoPath.value() + '/';
    return trash;
}

bool TrashFolder::contains(const QByteArray& folder, const Place& place, const struct statx& status) const
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

void TrashFolder::prepare(std::span<const QString> paths)
{
    HeldPlace ahead;
    bool isHere = false;
    for (const QString& path : paths) {
        if (ahead.goTo(path) != 0) {
            continue;
        }
        const Place& place = ahead.place();
        if (!ahead.isShared()) {
            const Result<struct statx> status = look(place.folder.get(), "", STATX_INO);
            isHere = status && isOnDevice(identityOf(status.value()).device);
        }
        const Result<QByteArray> folder = ahead.folderPath();
        if (!isHere || !folder) {
            continue;
        }
        Result<TrashRecord> record = freeRecord(folder.value(), place);
        if (!record) {
            return; // take() will meet the same, and says so
        }
        m_prepared.push_back({.path = pathOf(folder.value(), place), .record = std::move(record).value()});
        m_prepared.back().record.startWriting();
    }
}

Result<TrashRecord> TrashFolder::freeRecord(const QByteArray& folder, const Place& place)
{
    const QByteArray text = textOf(folder, place);
    TrashName name(m_infoIdentity, place.name);
    Result<TrashRecord> record = TrashRecord::make(m_info.get(), name.current(), text);
    while (!record && record.error().code == EEXIST) {
        name.advance();
        record = TrashRecord::make(m_info.get(), name.current(), text);
    }
    if (record) {
        name.remember();
    }
    return record;
}

std::optional<TrashRecord> TrashFolder::preparedRecord(const QByteArray& path)
{
    const auto found = std::ranges::find(m_prepared, path, &Prepared::path);
    // What stands before it was not taken. If it is not there at all, something else comes than was expected, and the
    // names that are held for that are given back.
    m_prepared.erase(m_prepared.begin(), found);
    if (m_prepared.empty()) {
        return {};
    }
    std::optional<TrashRecord> record = std::move(m_prepared.front().record);
    m_prepared.pop_front();
    return record;
}

int TrashFolder::take(const QByteArray& folder, const Place& place, const FileIdentity& identity)
{
    if (std::optional<TrashRecord> prepared = preparedRecord(pathOf(folder, place))) {
        const int error = takeAs(place, identity, *prepared);
        if (error != EEXIST) {
            return error;
        }
    }
    const QByteArray text = textOf(folder, place);
    TrashName name(m_infoIdentity, place.name);
    int error = takeAs(place, identity, name.current(), text);
    while (error == EEXIST) {
        name.advance();
        error = takeAs(place, identity, name.current(), text);
    }
    if (error == 0) {
        name.remember();
    }
    return error;
}

QByteArray TrashFolder::textOf(const QByteArray& folder, const Place& place)
{
    QByteArray path = pathOf(folder, place);
    if (!m_top.isEmpty()) {
        path = path.sliced(m_top == "/" ? 1 : m_top.size() + 1);
    }
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate=" + deletionDate() + '\n';
}

const QByteArray& TrashFolder::deletionDate()
{
    // Put into words as often as it changes, and not for each of many files.
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const qint64 second = now.toSecsSinceEpoch();
    if (m_dateSecond != second) {
        m_dateSecond = second;
        // Local time without a zone: so the rules want it.
        m_date = now.toLocalTime().toString(u"yyyy-MM-ddTHH:mm:ss"_s).toLatin1();
    }
    return m_date;
}

int TrashFolder::takeAs(const Place& place, const FileIdentity& identity, const QByteArray& name,
                        const QByteArray& text)
{
    Result<TrashRecord> record = TrashRecord::make(m_info.get(), name, text);
    return record ? takeAs(place, identity, record.value()) : record.error().code;
}

int TrashFolder::takeAs(const Place& place, const FileIdentity& identity, TrashRecord& record)
{
    if (const int error = record.finishWriting()) {
        return error;
    }
    m_inFiles.name = record.name();
    int error = renameWithoutReplacing(place, m_inFiles);
    if (error != 0 && hasArrived(place, identity, m_inFiles)) {
        error = 0;
    }
    if (error == 0) {
        record.keep();
    }
    return error;
}

} // namespace lapsa
