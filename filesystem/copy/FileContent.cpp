// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileContent.h"

#include "CachedParts.h"
#include "CopyProgress.h"
#include "FileDescriptor.h"
#include "SourceFile.h"
#include "StepLength.h"

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace lapsa {

namespace {

constexpr std::size_t bufferSize = std::size_t{256} * 1024;

/// The least stretch, in bytes, that is kept out of the page cache: smaller ones are not worth the calls.
constexpr off_t leastSpared = off_t{64} << 10;

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

/// Copies ranges of one file to another, step by step.
class ContentCopy final
{
public:
    ContentCopy(const SourceFile& from, int to, CopyProgress& progress)
        : m_source(from)
        , m_from(from.get())
        , m_to(to)
        , m_progress(progress)
    {}

    /// Returns an `errno` value.
    [[nodiscard]] int copy(Range range);

    /// Tells that the file has been copied up to here: holes count as well.
    [[nodiscard]] int tellUpTo(off_t place) { return m_progress.goOn(place - std::exchange(m_told, place)); }

private:
    [[nodiscard]] ssize_t copyStep(Range range);
    [[nodiscard]] ssize_t copyInKernel(Range range);
    [[nodiscard]] ssize_t copyThroughMemory(Range range);

    const SourceFile& m_source;
    int m_from;
    int m_to;
    CopyProgress& m_progress;
    StepLength m_step;
    off_t m_told = 0;
    /// Exists once the kernel has refused to copy by itself.
    std::unique_ptr<char[]> m_buffer;
};

/// Lets the kernel copy; goes through memory if it cannot. Between two steps, a writer may come in and the observer may
/// end the copy.
int ContentCopy::copy(Range range)
{
    std::optional<CachedParts> cached;
    if (m_progress.isLarge() && range.end - range.start >= leastSpared) {
        cached.emplace(m_from, range.start, range.end);
    }
    off_t written = range.start;
    while (range.start < range.end) {
        const off_t most = std::min(m_step.bytes(), m_progress.writeBehind().mostBytes());
        m_step.begin();
        const ssize_t copied = copyStep({.start = range.start, .end = std::min(range.end, range.start + most)});
        if (copied < 0) {
            return errno;
        }
        m_step.end();
        range.start += copied;
        int error = tellUpTo(range.start);
        if (error == 0 && cached && (range.start == range.end || range.start - written >= most)) {
            cached->dropUpTo(range.start);
            error = m_progress.writeBehind().add(m_to, std::exchange(written, range.start), range.start);
        }
        if (error != 0) {
            return error;
        }
        if (range.start < range.end && m_source.wanted()) {
            return ETXTBSY;
        }
    }
    return 0;
}

/// Returns how many bytes were copied, or -1.
ssize_t ContentCopy::copyStep(Range range)
{
    return m_buffer ? copyThroughMemory(range) : copyInKernel(range);
}

ssize_t ContentCopy::copyInKernel(Range range)
{
    off_t readingAt = range.start;
    off_t writingAt = range.start;
    const ssize_t copied = retrying([&] {
        return ::copy_file_range(m_from, &readingAt, m_to, &writingAt, std::size_t(range.end - range.start), 0);
    });
    if (copied > 0 || (copied < 0 && (errno == ENOSPC || errno == EDQUOT || errno == EIO || errno == EFBIG))) {
        return copied;
    }
    m_buffer = std::make_unique<char[]>(bufferSize);
    return copyThroughMemory(range);
}

ssize_t ContentCopy::copyThroughMemory(Range range)
{
    const std::size_t wanted = std::min(bufferSize, std::size_t(range.end - range.start));
    const ssize_t got = retrying([&] { return ::pread(m_from, m_buffer.get(), wanted, range.start); });
    const int error = got == 0  ? ETXTBSY
                      : got < 0 ? errno
                                : writeAt(m_to, m_buffer.get(), std::size_t(got), range.start);
    errno = error;
    return error == 0 ? got : -1;
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

int copyContent(const SourceFile& from, int to, off_t size, CopyProgress& progress)
{
    const int file = from.get();
    if (size == 0) {
        return progress.goOn();
    }
    if (::ioctl(to, FICLONE, file) == 0) {
        return progress.goOn(size);
    }
    ContentCopy content(from, to, progress);
    for (Range data = nextData(file, 0, size); data.start < data.end; data = nextData(file, data.end, size)) {
        if (const int error = content.copy(data)) {
            return error;
        }
    }
    // A hole at the end was not copied.
    const int error = errorOf([&] { return ::ftruncate(to, size); });
    return error != 0 ? error : content.tellUpTo(size);
}

} // namespace lapsa
