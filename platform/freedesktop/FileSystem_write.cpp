// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileDescriptor.h"
#include "FileSystem.h"
#include "Place.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <climits>

namespace lapsa::fileSystem {

namespace {

/// The place that a path means once the links at its end are followed; what it names need not exist.
Result<Place> openLinkedPlace(const QString& path)
{
    constexpr int mostLinks = 40; // as many as the kernel follows
    Result<Place> place = openPlace(path);
    for (int links = 0; place && links < mostLinks; ++links) {
        QByteArray target(PATH_MAX, Qt::Uninitialized);
        const ssize_t length = ::readlinkat(place.value().folder.get(), place.value().name.constData(), target.data(),
                                            size_t(target.size()));
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT ? std::move(place) : FileError::fromErrno(errno);
        }
        target.truncate(length);
        place = openPlace(place.value().folder.get(), target);
    }
    return place ? FileError::fromErrno(ELOOP) : std::move(place);
}

int writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = retrying([&] { return ::write(file, bytes.data(), size_t(bytes.size())); });
        if (written <= 0) {
            return written == 0 ? EIO : errno;
        }
        bytes = bytes.sliced(written);
    }
    return 0;
}

/// Makes a new file of exactly these bytes, on the disk when this returns. Returns an `errno` value.
int writeNewFile(const Place& place, QByteArrayView bytes)
{
    FileDescriptor file(retrying([&] {
        return ::openat(place.folder.get(), place.name.constData(),
                        O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    }));
    if (!file) {
        return errno;
    }
    int error = writeAll(file.get(), bytes);
    if (error == 0) {
        error = errorOf([&] { return ::fsync(file.get()); });
    }
    const int closing = file.close();
    return error != 0 ? error : closing;
}

/// Makes a renaming in the folder last. Returns an `errno` value.
int syncFolder(const Place& place)
{
    const FileDescriptor folder(
        retrying([&] { return ::openat(place.folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return folder ? errorOf([&] { return ::fsync(folder.get()); }) : errno;
}

} // namespace

Result<void> writeAtomically(const QString& path, QByteArrayView bytes)
{
    const Result<Place> target = openLinkedPlace(path);
    if (!target) {
        return target.error();
    }
    const int folder = target.value().folder.get();
    const QByteArray& name = target.value().name;
    const Result<Place> temporary = openPlace(folder, name + ".tmp");
    if (!temporary) {
        return temporary.error();
    }
    const char* const temporaryName = temporary.value().name.constData();

    // One that an earlier process left behind when it was killed.
    ::unlinkat(folder, temporaryName, 0);
    int error = writeNewFile(temporary.value(), bytes);
    if (error == EEXIST) {
        return FileError::fromErrno(error); // not ours: somebody keeps a folder under this name
    }
    if (error == 0) {
        error = errorOf([&] { return ::renameat(folder, temporaryName, folder, name.constData()); });
    }
    if (error != 0) {
        ::unlinkat(folder, temporaryName, 0);
        return FileError::fromErrno(error);
    }
    error = syncFolder(target.value());
    return error == 0 ? Result<void>() : FileError::fromErrno(error);
}

} // namespace lapsa::fileSystem
