// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SourceFile.h"

#include "SystemCalls.h"

#include <fcntl.h>
#include <poll.h>

#include <cerrno>
#include <csignal>
#include <utility>

namespace lapsa {

namespace {

/// Returns an `errno` value.
int lease(int file)
{
    // wanted() asks the kernel, so no signal is needed. The default signal would end the process; this one is ignored
    // by default.
    ::fcntl(file, F_SETSIG, SIGURG);
    return errorOf([&] { return ::fcntl(file, F_SETLEASE, F_RDLCK); });
}

} // namespace

SourceFile::SourceFile(FileDescriptor file, bool leased)
    : m_file(std::move(file))
    , m_leased(leased)
{}

Result<SourceFile> SourceFile::open(const FoundEntry& entry)
{
    // Must not block: the file may have become a pipe.
    Result<FileDescriptor> found = openAt(entry.folder, entry.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (!found) {
        return found.error().code == ELOOP ? FileError::fromErrno(EBUSY) : found.error();
    }
    FileDescriptor file = std::move(found).value();
    const Result<struct statx> opened = statAt(file.get(), "", STATX_BASIC_STATS);
    if (!opened || identityOf(opened.value()) != identityOf(entry.status)) {
        return FileError::fromErrno(EBUSY);
    }
    const int error = lease(file.get());
    if (error == EAGAIN) {
        return FileError::fromErrno(ETXTBSY);
    }
    return SourceFile(std::move(file), error == 0);
}

bool SourceFile::wanted() const
{
    return m_leased && ::fcntl(m_file.get(), F_GETLEASE) != F_RDLCK;
}

bool SourceFile::isStill(const struct statx& status) const
{
    const Result<struct statx> now = statAt(m_file.get(), "", STATX_BASIC_STATS);
    return now && !wanted() && ContentStamp::of(now.value()) == ContentStamp::of(status);
}

bool SourceFile::awaitWriters(std::chrono::milliseconds patience, const std::function<void()>& alive)
{
    if (!m_leased) {
        return false;
    }
    constexpr int interval = 5; // milliseconds
    ::fcntl(m_file.get(), F_SETLEASE, F_UNLCK);
    m_leased = false;
    const auto end = std::chrono::steady_clock::now() + patience;
    // Whoever waits to open the file already counts as a writer.
    while (!m_leased && std::chrono::steady_clock::now() < end) {
        m_leased = lease(m_file.get()) == 0;
        if (!m_leased) {
            alive();
            ::poll(nullptr, 0, interval);
        }
    }
    return m_leased;
}

} // namespace lapsa
