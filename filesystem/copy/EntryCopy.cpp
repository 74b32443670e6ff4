// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "EntryCopy.h"

#include "FileAttributes.h"
#include "FileContent.h"
#include "SourceFile.h"
#include "SystemCalls.h"

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace lapsa {

namespace {

bool sameTime(const statx_timestamp& left, const statx_timestamp& right)
{
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

int copyRegularEntry(const FoundEntry& entry, int toFolder, const char* toName, CopyProgress& progress)
{
    const Result<SourceFile> from = SourceFile::open(entry);
    if (!from) {
        return from.error().code;
    }
    Result<FileDescriptor> made = openAt(toFolder, toName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!made) {
        return made.error().code;
    }
    FileDescriptor to = std::move(made).value();
    int error = copyRegularFile(from.value(), to.get(), entry.status, progress);
    const int closing = to.close();
    error = error != 0 ? error : closing;
    if (error != 0) {
        ::unlinkat(toFolder, toName, 0);
    }
    return error;
}

int makeLink(const FoundEntry& entry, int toFolder, const char* toName)
{
    const Result<QByteArray> target = readLinkAt(entry.folder, entry.name);
    if (!target) {
        return target.error().code;
    }
    return errorOf([&] { return ::symlinkat(target.value().constData(), toFolder, toName); });
}

int makeSpecialFile(const FoundEntry& entry, int toFolder, const char* toName)
{
    const mode_t kind = entry.status.stx_mode & S_IFMT;
    const dev_t device = makedev(entry.status.stx_rdev_major, entry.status.stx_rdev_minor);
    return errorOf([&] { return ::mknodat(toFolder, toName, kind | 0600U, device); });
}

/// For entries that are not opened themselves. EBUSY if another entry has replaced the one that was found.
int copyAttributesOf(const FoundEntry& entry, int toFolder, const char* toName)
{
    const Result<FileDescriptor> from = openAt(entry.folder, entry.name, O_PATH | O_NOFOLLOW);
    if (!from) {
        return from.error().code;
    }
    const Result<FileDescriptor> to = openAt(toFolder, toName, O_PATH | O_NOFOLLOW);
    if (!to) {
        return to.error().code;
    }
    if (const int error = copyAttributes(from.value().get(), to.value().get(), entry.status)) {
        return error;
    }
    const Result<struct statx> now = statAt(from.value().get(), "", STATX_BASIC_STATS);
    return now && identityOf(now.value()) == identityOf(entry.status) ? 0 : EBUSY;
}

/// Links, pipes, sockets and devices: created anew, without reading from them.
int remakeEntry(const FoundEntry& entry, int toFolder, const char* toName)
{
    const int made =
        S_ISLNK(entry.status.stx_mode) ? makeLink(entry, toFolder, toName) : makeSpecialFile(entry, toFolder, toName);
    if (made != 0) {
        return made;
    }
    const int error = copyAttributesOf(entry, toFolder, toName);
    if (error != 0) {
        ::unlinkat(toFolder, toName, 0);
    }
    return error;
}

} // namespace

ContentStamp ContentStamp::of(const struct statx& status)
{
    return {.size = status.stx_size, .changed = status.stx_mtime, .statusChanged = status.stx_ctime};
}

bool operator==(const ContentStamp& left, const ContentStamp& right)
{
    return left.size == right.size && sameTime(left.changed, right.changed) &&
           sameTime(left.statusChanged, right.statusChanged);
}

int copyRegularFile(const SourceFile& from, int to, const struct statx& status, CopyProgress& progress)
{
    if (const int error = copyContent(from, to, off_t(status.stx_size), progress)) {
        return error;
    }
    if (const int error = copyAttributes(from.get(), to, status)) {
        return error;
    }
    return from.isStill(status) ? 0 : ETXTBSY;
}

int copyEntry(const FoundEntry& entry, int toFolder, const char* toName, CopyProgress& progress)
{
    return S_ISREG(entry.status.stx_mode) ? copyRegularEntry(entry, toFolder, toName, progress)
                                          : remakeEntry(entry, toFolder, toName);
}

int removalForbidden(const FoundEntry& entry, const struct statx& folder)
{
    constexpr std::uint64_t fixed = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
    if (((entry.status.stx_attributes | folder.stx_attributes) & fixed) != 0) {
        return EPERM;
    }
    const uid_t self = ::geteuid();
    const bool sticky = (folder.stx_mode & S_ISVTX) != 0;
    if (sticky && self != 0 && folder.stx_uid != self && entry.status.stx_uid != self) {
        return EPERM;
    }
    return errorOf([&] { return ::faccessat(entry.folder, ".", W_OK | X_OK, AT_EACCESS); });
}

} // namespace lapsa
