// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WriteBehind.h"

#include <fcntl.h>

#include <utility>

namespace lapsa {

namespace {

/// Returns an `errno` value, but only of a failed write: not every file system can write a part of a file.
int writeOut(int file, off_t start, off_t end, unsigned how)
{
    const int error = errorOf([&] { return ::sync_file_range(file, start, end - start, how); });
    return error == EIO || error == ENOSPC || error == EDQUOT ? error : 0;
}

} // namespace

int WriteBehind::add(int to, off_t start, off_t end)
{
    constexpr std::size_t mostParts = 64;
    if (const int error = writeOut(to, start, end, SYNC_FILE_RANGE_WRITE)) {
        return error;
    }
    FileDescriptor file(::fcntl(to, F_DUPFD_CLOEXEC, 0));
    if (!file) {
        return 0; // too many open files: the sync at the end writes it
    }
    m_parts.push_back({.file = std::move(file), .start = start, .end = end});
    m_bytes += end - start;
    int error = 0;
    while (error == 0 && (m_parts.size() > mostParts || (m_parts.size() > 1 && m_bytes > 2 * m_length.bytes()))) {
        error = finishOne();
    }
    return error;
}

int WriteBehind::finishOne()
{
    if (m_parts.empty()) {
        return 0;
    }
    const Part part = std::move(m_parts.front());
    m_parts.pop_front();
    m_bytes -= part.end - part.start;
    constexpr unsigned all = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    m_length.begin();
    const int error = writeOut(part.file.get(), part.start, part.end, all);
    m_length.end();
    // All of it up to here, because the cache lets go only of whole units.
    ::posix_fadvise(part.file.get(), 0, part.end, POSIX_FADV_DONTNEED);
    return error;
}

} // namespace lapsa
