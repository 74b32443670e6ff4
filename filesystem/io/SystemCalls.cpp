// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SystemCalls.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstddef>

namespace lapsa {

Result<FileDescriptor> openAt(int folder, const char* path, int flags, mode_t mode)
{
    FileDescriptor file(retrying([&] { return ::openat(folder, path, flags | O_CLOEXEC, mode); }));
    if (!file) {
        return FileError::fromErrno(errno);
    }
    return file;
}

Result<QByteArray> readLinkAt(int folder, const char* path)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const ssize_t length = ::readlinkat(folder, path, target.data(), std::size_t(target.size()));
    if (length < 0) {
        return FileError::fromErrno(errno);
    }
    target.truncate(length);
    return target;
}

int writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = retrying([&] { return ::write(file, bytes.data(), std::size_t(bytes.size())); });
        if (written <= 0) {
            return written == 0 ? EIO : errno;
        }
        bytes = bytes.sliced(written);
    }
    return 0;
}

int syncFolder(int folder)
{
    const Result<FileDescriptor> readable = openAt(folder, ".", O_RDONLY | O_DIRECTORY);
    return readable ? errorOf([&] { return ::fsync(readable.value().get()); }) : readable.error().code;
}

int syncNames(int folder)
{
    const int error = syncFolder(folder);
    if (error == EACCES) {
        ::sync();
        return 0;
    }
    return error;
}

} // namespace lapsa
