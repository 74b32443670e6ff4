// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileContent.h"

#include "FileDescriptor.h"
#include "SourceFile.h"

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

namespace lapsa {

namespace {

struct Range
{
    off_t start = 0;
    off_t end = 0;
};

int writeAt(int to, const char* bytes, std::size_t count, off_t place)
{
    while (count > 0) {
        const ssize_t written = retrying([&] { return ::pwrite(to, bytes, count, place); });
        if (written <= 0) {
            return written == 0 ? EIO : errno;
        }
        bytes += written;
        count -= std::size_t(written);
        place += written;
    }
    return 0;
}

int copyThroughMemory(int from, int to, Range range)
{
    constexpr std::size_t bufferSize = std::size_t{256} * 1024;
    const auto buffer = std::make_unique<char[]>(bufferSize);
    while (range.start < range.end) {
        const std::size_t wanted = std::min(bufferSize, std::size_t(range.end - range.start));
        const ssize_t got = retrying([&] { return ::pread(from, buffer.get(), wanted, range.start); });
        if (got <= 0) {
            return got == 0 ? ETXTBSY : errno;
        }
        if (const int error = writeAt(to, buffer.get(), std::size_t(got), range.start)) {
            return error;
        }
        range.start += got;
    }
    return 0;
}

/// Lets the kernel copy; goes through memory if it cannot.
int copyStretch(int from, int to, Range range)
{
    while (range.start < range.end) {
        off_t readingAt = range.start;
        off_t writingAt = range.start;
        const ssize_t copied = retrying([&] {
            return ::copy_file_range(from, &readingAt, to, &writingAt, std::size_t(range.end - range.start), 0);
        });
        if (copied < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EIO || errno == EFBIG)) {
            return errno;
        }
        if (copied <= 0) {
            return copyThroughMemory(from, to, range);
        }
        range.start += copied;
    }
    return 0;
}

/// Copies in stretches: a writer has to wait for the end of a stretch only, not of the whole file.
int copyRange(const SourceFile& from, int to, Range range)
{
    constexpr off_t stretch = off_t{16} << 20;
    while (range.start < range.end) {
        const off_t end = std::min(range.end, range.start + stretch);
        if (const int error = copyStretch(from.get(), to, {.start = range.start, .end = end})) {
            return error;
        }
        range.start = end;
        if (range.start < range.end && from.wanted()) {
            return ETXTBSY;
        }
    }
    return 0;
}

/// The next stretch of data at or after `place`; empty at the end. If the file system does not report holes, the whole
/// rest is data.
Range nextData(int from, off_t place, off_t size)
{
    const off_t start = ::lseek(from, place, SEEK_DATA);
    if (start < 0) {
        return errno == ENXIO ? Range{.start = size, .end = size} : Range{.start = place, .end = size};
    }
    const off_t end = ::lseek(from, start, SEEK_HOLE);
    return {.start = std::min(start, size), .end = end < 0 ? size : std::min(end, size)};
}

} // namespace

int copyContent(const SourceFile& from, int to, off_t size)
{
    const int file = from.get();
    if (size == 0) {
        return 0;
    }
    if (::ioctl(to, FICLONE, file) == 0) {
        return 0;
    }
    for (Range data = nextData(file, 0, size); data.start < data.end; data = nextData(file, data.end, size)) {
        if (const int error = copyRange(from, to, data)) {
            return error;
        }
    }
    // A hole at the end was not copied.
    return errorOf([&] { return ::ftruncate(to, size); });
}

} // namespace lapsa
