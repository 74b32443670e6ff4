// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "EntryComparison.h"

#include "SystemCalls.h"
#include "WorkObserver.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <vector>

namespace lapsa {

namespace {

using fileSystem::Duplicate;
using fileSystem::WorkObserver;

/// FAT keeps times in steps of two seconds.
constexpr std::int64_t coarsestTime = 2'000'000'000; // nanoseconds

bool nearlySameTime(const statx_timestamp& left, const statx_timestamp& right)
{
    constexpr std::int64_t second = 1'000'000'000;
    const std::int64_t seconds = left.tv_sec - right.tv_sec;
    if (seconds < -2 || seconds > 2) {
        return false; // the product below could overflow
    }
    const std::int64_t difference = seconds * second + (std::int64_t{left.tv_nsec} - right.tv_nsec);
    return difference >= -coarsestTime && difference <= coarsestTime;
}

/// Reads until the buffer is full or the file ends. -1 after a failure.
ssize_t readFully(int file, std::vector<char>& buffer)
{
    std::size_t length = 0;
    while (length < buffer.size()) {
        const ssize_t got = retrying([&] { return ::read(file, buffer.data() + length, buffer.size() - length); });
        if (got < 0) {
            return -1;
        }
        if (got == 0) {
            break;
        }
        length += std::size_t(got);
    }
    return ssize_t(length);
}

Duplicate compareBytes(const FileDescriptor& copy, const FileDescriptor& original, WorkObserver* observer)
{
    constexpr std::size_t step = std::size_t{1} << 18;
    std::vector<char> left(step);
    std::vector<char> right(step);
    ssize_t length = 1;
    while (length > 0) {
        if (observer != nullptr) {
            observer->removed(0); // a sign of life
            if (observer->stopRequested()) {
                return Duplicate::Unknown;
            }
        }
        length = readFully(copy.get(), left);
        const ssize_t other = readFully(original.get(), right);
        if (length < 0 || other < 0) {
            return Duplicate::Unknown;
        }
        if (length != other || std::memcmp(left.data(), right.data(), std::size_t(length)) != 0) {
            return Duplicate::Differs;
        }
    }
    return Duplicate::Gone;
}

/// Gone if the files are the same, so that one of them can go.
Duplicate compareFiles(const AtPath& copy, const struct statx& copyStatus, const AtPath& original,
                       const struct statx& originalStatus, WorkObserver* observer)
{
    if (copyStatus.stx_size != originalStatus.stx_size ||
        !nearlySameTime(copyStatus.stx_mtime, originalStatus.stx_mtime)) {
        return Duplicate::Differs;
    }
    const Result<FileDescriptor> one = openFound(copy, copyStatus);
    const Result<FileDescriptor> other = openFound(original, originalStatus);
    if (!one || !other) {
        return Duplicate::Unknown;
    }
    const Duplicate result = compareBytes(one.value(), other.value(), observer);
    // Compared is compared only if nobody wrote meanwhile.
    const Result<struct statx> now = statAt(other.value().get(), "", STATX_BASIC_STATS);
    const bool unchanged = now && now.value().stx_size == originalStatus.stx_size &&
                           now.value().stx_ctime.tv_sec == originalStatus.stx_ctime.tv_sec &&
                           now.value().stx_ctime.tv_nsec == originalStatus.stx_ctime.tv_nsec;
    return unchanged ? result : Duplicate::Unknown;
}

Duplicate compareTargets(const AtPath& copy, const AtPath& original)
{
    const Result<QByteArray> one = readLinkAt(copy.folder.get(), copy.name.constData());
    const Result<QByteArray> other = readLinkAt(original.folder.get(), original.name.constData());
    if (!one || !other) {
        return Duplicate::Unknown;
    }
    return one.value() == other.value() ? Duplicate::Gone : Duplicate::Differs;
}

} // namespace

Result<struct statx> statusOf(const AtPath& place)
{
    return statAt(place.folder.get(), place.name.constData(), STATX_BASIC_STATS);
}

Result<FileDescriptor> openFound(const AtPath& place, const struct statx& status)
{
    Result<FileDescriptor> file =
        openAt(place.folder.get(), place.name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (file) {
        const Result<struct statx> opened = statAt(file.value().get(), "", STATX_INO);
        if (!opened || identityOf(opened.value()) != identityOf(status)) {
            return FileError::fromErrno(EBUSY);
        }
    }
    return file;
}

Duplicate compare(const AtPath& copy, const AtPath& original, WorkObserver* observer)
{
    const Result<struct statx> one = statusOf(copy);
    const Result<struct statx> other = statusOf(original);
    if (one && !other && other.error().code == ENOENT) {
        return Duplicate::Differs;
    }
    if (!one || !other || identityOf(one.value()) == identityOf(other.value())) {
        return Duplicate::Unknown;
    }
    if ((one.value().stx_mode & S_IFMT) != (other.value().stx_mode & S_IFMT)) {
        return Duplicate::Differs;
    }
    switch (one.value().stx_mode & S_IFMT) {
    case S_IFREG:
        return compareFiles(copy, one.value(), original, other.value(), observer);
    case S_IFLNK:
        return compareTargets(copy, original);
    default:
        return one.value().stx_rdev_major == other.value().stx_rdev_major &&
                       one.value().stx_rdev_minor == other.value().stx_rdev_minor
                   ? Duplicate::Gone
                   : Duplicate::Differs;
    }
}

} // namespace lapsa
