// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "FileDescriptor.h"

#include <sys/stat.h>

#include <unordered_map>

namespace lapsa {

class SourceFile;

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

/// Copies content and attributes of a regular file into an open, empty one. Returns an `errno` value: ETXTBSY when the
/// source was written to since it was found with this status, or somebody is about to.
[[nodiscard]] int copyRegularFile(const SourceFile& from, int to, const struct statx& status);

/// Makes a copy of any entry but a folder under a name that must be free. Returns an `errno` value; after a failure
/// nothing stands there, unless it was there before (EEXIST).
[[nodiscard]] int copyEntry(const FoundEntry& entry, int toFolder, const char* toName);

/// Whether the entry may be removed from its folder as far as rights and flags tell: EACCES, EPERM or EROFS where not.
/// `folder` is the status of the folder that holds it.
[[nodiscard]] int removalForbidden(const FoundEntry& entry, const struct statx& folder);

} // namespace lapsa
