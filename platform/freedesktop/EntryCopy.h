// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "Place.h"

#include <sys/stat.h>

#include <unordered_map>

namespace lapsa {

/// What of a file tells that it is still as it was copied.
struct ContentStamp
{
    std::uint64_t size = 0;
    statx_timestamp changed{};
    statx_timestamp statusChanged{};
    /// How many of its names were copied; no part of what is compared.
    int names = 1;

    [[nodiscard]] static ContentStamp of(const struct statx& status);
    friend bool operator==(const ContentStamp& left, const ContentStamp& right);
};

/// What was copied, and how it looked then. Only that may be removed at the source.
using CopiedFiles = std::unordered_map<FileIdentity, ContentStamp, FileIdentityHash>;

/// An entry of an open folder as it was found there.
struct FoundEntry
{
    int folder = -1;
    const char* name = nullptr;
    const struct statx& status;
};

/// Opens a regular file for copying; an `errno` value where it is no longer the one that was found.
[[nodiscard]] Result<FileDescriptor> openFound(const FoundEntry& entry);

/// Copies content and attributes of an open regular file into an open, empty one. Returns an `errno` value: EBUSY when
/// the source changed meanwhile.
[[nodiscard]] int copyRegularFile(int from, int to, const struct statx& status);

/// Makes a copy of any entry but a folder under a name that must be free. Returns an `errno` value; after a failure
/// nothing stands there, unless it was there before (EEXIST).
[[nodiscard]] int copyEntry(const FoundEntry& entry, int toFolder, const char* toName);

/// Whether the entry may be removed from its folder as far as rights and flags tell: EACCES, EPERM or EROFS where not.
/// `folder` is the status of the folder that holds it.
[[nodiscard]] int removalForbidden(const FoundEntry& entry, const struct statx& folder);

} // namespace lapsa
