// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "EntryCopy.h"

namespace lapsa {

/// Copies a regular file to a name that must be free, which it gets only when it is complete and on the disk. Returns
/// an `errno` value, as copyRegularFile() does; after a failure nothing is there, but for moveUnfinished.
[[nodiscard]] int copyFileTo(const AtPath& to, const FoundEntry& entry, const SourceFile& from, CopyProgress& progress);

/// Renames a complete copy, which is also open, to its final name. Returns an `errno` value.
[[nodiscard]] int putInPlace(const AtPath& copy, int open, const AtPath& to);

} // namespace lapsa
