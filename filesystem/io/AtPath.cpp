// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AtPath.h"

#include "SystemCalls.h"

#include <QUtf8StringView>

#include <fcntl.h>

#include <cstdio>

namespace lapsa {

namespace {

QByteArray withoutTrailingSlashes(QByteArray path)
{
    while (path.endsWith('/')) {
        path.chop(1);
    }
    return path;
}

/// For file systems that cannot rename without replacing: adds the new name, then removes the old one.
int relinked(const AtPath& from, const FileIdentity& identity, const AtPath& to)
{
    const char* const fromName = from.name.constData();
    const char* const toName = to.name.constData();
    const int linking = errorOf([&] { return ::linkat(from.folder.get(), fromName, to.folder.get(), toName, 0); });
    // EEXIST does not show that the call worked: the name may already have been a hard link to this file.
    if (linking == EEXIST || (linking != 0 && !stands(to, identity))) {
        return linking;
    }
    const int error = errorOf([&] { return ::unlinkat(from.folder.get(), fromName, 0); });
    if (error == 0 || !stands(from, identity)) {
        return 0;
    }
    ::unlinkat(to.folder.get(), toName, 0);
    return stands(to, identity) ? moveUnfinished : error;
}

/// Checks with two calls that the place is free: if nothing else protects a file from being replaced, one wrong answer
/// of a failing disk or network must not be enough. Returns an `errno` value.
int lookedFree(const AtPath& place)
{
    const Result<struct statx> found = statAt(place.folder.get(), place.name.constData(), STATX_TYPE);
    if (found) {
        return EEXIST;
    }
    if (found.error().code != ENOENT) {
        return found.error().code;
    }
    struct stat status = {};
    const int error =
        errorOf([&] { return ::fstatat(place.folder.get(), place.name.constData(), &status, AT_SYMLINK_NOFOLLOW); });
    if (error == 0) {
        return EEXIST;
    }
    return error == ENOENT ? 0 : error;
}

int renamedAfterLooking(const AtPath& from, const AtPath& to)
{
    if (const int error = lookedFree(to)) {
        return error;
    }
    return errorOf(
        [&] { return ::renameat(from.folder.get(), from.name.constData(), to.folder.get(), to.name.constData()); });
}

int renamedByOtherMeans(const AtPath& from, const AtPath& to)
{
    const Result<struct statx> status = statAt(from.folder.get(), from.name.constData(), STATX_TYPE | STATX_INO);
    if (!status) {
        return status.error().code;
    }
    if (!isFolder(status.value())) {
        const int error = relinked(from, identityOf(status.value()), to);
        // Without hard links, as on some network and camera file systems, the only way left is to look first.
        if (error != EPERM && error != EOPNOTSUPP && error != ENOSYS && error != EMLINK) {
            return error;
        }
    }
    return renamedAfterLooking(from, to);
}

} // namespace

Result<QByteArray> pathBytes(const QString& path)
{
    // Half a surrogate pair would become a question mark, and so the name of another file.
    if (!path.startsWith(u'/') || path.contains(QChar::Null) || !path.isValidUtf16()) {
        return FileError::fromErrno(EINVAL);
    }
    const QByteArray bytes = withoutTrailingSlashes(path.toUtf8());
    return bytes.isEmpty() ? QByteArray("/") : bytes;
}

QString nameText(QByteArrayView bytes)
{
    if (!QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8()) {
        return {};
    }
    // Decoded after another character: fromUtf8() would drop a byte order mark at the start, which is part of the name.
    const QByteArray guarded = '/' + bytes.toByteArray();
    return QString::fromUtf8(guarded).sliced(1);
}

Result<AtPath> openParentOf(const QString& path)
{
    const Result<QByteArray> bytes = pathBytes(path);
    if (!bytes) {
        return bytes.error();
    }
    return openParentOf(AT_FDCWD, bytes.value());
}

Result<AtPath> openParentOf(int folder, const QByteArray& path)
{
    const QByteArray bytes = withoutTrailingSlashes(path);
    if (bytes.isEmpty()) {
        return FileError::fromErrno(path.isEmpty() ? EINVAL : EPERM);
    }
    const qsizetype slash = bytes.lastIndexOf('/');
    AtPath place{.folder = {}, .name = bytes.sliced(slash + 1)};
    if (place.name == "." || place.name == "..") {
        return FileError::fromErrno(EINVAL);
    }
    const QByteArray parent = slash < 0 ? QByteArray(".") : bytes.first(slash + 1);
    Result<FileDescriptor> opened = openAt(folder, parent.constData(), O_PATH | O_DIRECTORY);
    if (!opened) {
        return opened.error();
    }
    place.folder = SharedDescriptor(std::move(opened).value());
    return place;
}

Result<struct statx> statAt(int folder, const char* name, unsigned mask)
{
    const int flags = AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT | (*name == '\0' ? AT_EMPTY_PATH : 0);
    struct statx status = {};
    if (const int error = errorOf([&] { return ::statx(folder, name, flags, mask, &status); })) {
        return FileError::fromErrno(error);
    }
    return status;
}

FileIdentity identityOf(const struct statx& status)
{
    return {.device = std::uint64_t{status.stx_dev_major} << 32U | status.stx_dev_minor, .inode = status.stx_ino};
}

bool stands(const AtPath& place, const FileIdentity& identity)
{
    const Result<struct statx> found = statAt(place.folder.get(), place.name.constData(), STATX_INO);
    return found && identityOf(found.value()) == identity;
}

bool isGone(int folder, const char* name)
{
    const Result<struct statx> found = statAt(folder, name, STATX_TYPE);
    struct stat status = {};
    return !found && found.error().code == ENOENT &&
           errorOf([&] { return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW); }) == ENOENT;
}

bool hasArrived(const AtPath& from, const FileIdentity& identity, const AtPath& to)
{
    return stands(to, identity) && !stands(from, identity);
}

QByteArray procPath(int descriptor)
{
    return "/proc/self/fd/" + QByteArray::number(descriptor);
}

Result<QByteArray> realPath(int folder)
{
    return readLinkAt(AT_FDCWD, procPath(folder).constData());
}

int renameWithoutReplacing(const AtPath& from, const AtPath& to)
{
    const int error = errorOf([&] {
        return ::renameat2(from.folder.get(), from.name.constData(), to.folder.get(), to.name.constData(),
                           RENAME_NOREPLACE);
    });
    return error == EINVAL || error == ENOSYS ? renamedByOtherMeans(from, to) : error;
}

} // namespace lapsa
