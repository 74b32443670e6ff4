// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrashRecord.h"

#include "SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <utility>

namespace lapsa {

namespace {

/// In bytes: a path whose every byte is escaped, and a date.
constexpr qsizetype longest = 3 * PATH_MAX + 100;

int writeOut(int file, unsigned how)
{
    return errorOf([&] { return ::sync_file_range(file, 0, 0, how); });
}

/// Whether the kernel or the file system does not support sync_file_range(2).
bool isUnknown(int error)
{
    return error == ENOSYS || error == ESPIPE || error == EINVAL || error == EOPNOTSUPP;
}

} // namespace

TrashRecord::TrashRecord(int info, QByteArray name, FileDescriptor file)
    : m_info(info)
    , m_name(std::move(name))
    , m_file(std::move(file))
{}

TrashRecord::TrashRecord(TrashRecord&& other) noexcept
    : m_info(other.m_info)
    , m_name(std::move(other.m_name))
    , m_file(std::move(other.m_file))
    , m_error(other.m_error)
    , m_kept(std::exchange(other.m_kept, true))
{}

TrashRecord& TrashRecord::operator=(TrashRecord&& other) noexcept
{
    std::swap(m_info, other.m_info);
    std::swap(m_name, other.m_name);
    std::swap(m_file, other.m_file);
    std::swap(m_error, other.m_error);
    std::swap(m_kept, other.m_kept);
    return *this;
}

TrashRecord::~TrashRecord()
{
    if (!m_kept) {
        ::unlinkat(m_info, fileName(m_name).constData(), 0);
    }
}

QByteArray TrashRecord::fileName(const QByteArray& name)
{
    return name + ".trashinfo";
}

Result<QByteArray> TrashRecord::read(int info, const QByteArray& name)
{
    // A pipe in its place must not make it wait.
    const Result<FileDescriptor> file = openAt(info, fileName(name).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    if (!file) {
        return file.error();
    }
    QByteArray text(longest, Qt::Uninitialized);
    const ssize_t length = retrying([&] { return ::read(file.value().get(), text.data(), std::size_t(text.size())); });
    if (length < 0) {
        return FileError::fromErrno(errno);
    }
    text.truncate(length);
    return text;
}

Result<TrashRecord> TrashRecord::make(int info, QByteArray name, QByteArrayView text)
{
    Result<FileDescriptor> file =
        openAt(info, fileName(name).constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!file) {
        return file.error();
    }
    TrashRecord record(info, std::move(name), std::move(file).value());
    if (const int error = writeAll(record.m_file.get(), text)) {
        return FileError::fromErrno(error);
    }
    return record;
}

void TrashRecord::startWriting()
{
    const int error = writeOut(m_file.get(), SYNC_FILE_RANGE_WRITE);
    m_error = isUnknown(error) ? 0 : error;
}

int TrashRecord::finishWriting()
{
    constexpr unsigned all = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    int error = m_error != 0 ? m_error : writeOut(m_file.get(), all);
    if (isUnknown(error)) {
        error = errorOf([&] { return ::fdatasync(m_file.get()); });
    }
    const int closing = m_file.close();
    return error != 0 ? error : closing;
}

} // namespace lapsa
