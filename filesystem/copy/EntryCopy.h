// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "FileDescriptor.h"

#include <sys/stat.h>

#include <unordered_map>

namespace lapsa {

class CopyProgress;
class SourceFile;

/// Tells whether a file has changed since it was copied.
struct ContentStamp
{
    std::uint64_t size = 0;
    statx_timestamp changed{};
    statx_timestamp statusChanged{};
    /// How many of its names were copied; not compared.
    int names = 1;

    [[nodiscard]] static ContentStamp of(const struct statx& status);
    friend bool operator==(const ContentStamp& left, const ContentStamp& right);
};

/// The copied files and how they looked then. Only these may be removed at the source.
using CopiedFiles = std::unordered_map<FileIdentity, ContentStamp, FileIdentityHash>;

/// An entry of an open folder, as it was found.
struct FoundEntry
{
    int folder = -1;
    const char* name = nullptr;
    const struct statx& status;
};

/// Copies content and attributes of a regular file into an open, empty one. Returns an `errno` value: ETXTBSY if
/// somebody wrote to the source since it had this status, or is about to; ECANCELED if the copy was stopped.
[[nodiscard]] int copyRegularFile(const SourceFile& from, int to, const struct statx& status, CopyProgress& progress);

/// Copies any entry but a folder to a name that must be free. Returns an `errno` value; after a failure nothing is
/// there, unless it was there before (EEXIST).
[[nodiscard]] int copyEntry(const FoundEntry& entry, int toFolder, const char* toName, CopyProgress& progress);

/// Checks by rights and flags whether the entry may be removed from its folder: EACCES, EPERM or EROFS if not. `folder`
/// is the status of the folder that holds it.
[[nodiscard]] int removalForbidden(const FoundEntry& entry, const struct statx& folder);

} // namespace lapsa
