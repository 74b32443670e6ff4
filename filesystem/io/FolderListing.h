// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <dirent.h>
#include <fcntl.h>

#include <cstring>
#include <memory>
#include <utility>

namespace lapsa {

struct CloseFolder
{
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// Calls `visit(const dirent&)` for every entry of a folder but "." and "..", in the file system's order and with raw
/// names, until it returns false. The folder must be open for reading. Returns an `errno` value.
template <typename Visit>
[[nodiscard]] int forEachRawEntry(FileDescriptor folder, Visit visit)
{
    const std::unique_ptr<DIR, CloseFolder> listing(::fdopendir(folder.get()));
    if (!listing) {
        return errno;
    }
    static_cast<void>(folder.release()); // the listing closes it
    errno = 0;
    for (const dirent* entry = ::readdir(listing.get()); entry != nullptr; entry = ::readdir(listing.get())) {
        const char* const name = entry->d_name;
        if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0 && !visit(*entry)) {
            return 0;
        }
        errno = 0;
    }
    return errno;
}

/// The same for a folder that stays open; starts at its first entry.
template <typename Visit>
[[nodiscard]] int forEachRawEntry(int folder, Visit visit)
{
    FileDescriptor copy(::fcntl(folder, F_DUPFD_CLOEXEC, 0));
    if (!copy || ::lseek(copy.get(), 0, SEEK_SET) != 0) {
        return errno;
    }
    return forEachRawEntry(std::move(copy), visit);
}

} // namespace lapsa
