// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

namespace lapsa {

class CopyProgress;
class SourceFile;

/// Copies `size` bytes from a file to an empty one, as shared blocks if the file system supports it. Holes stay holes.
/// Returns an `errno` value: ETXTBSY if the source became shorter meanwhile, or somebody wants to write to it;
/// ECANCELED if the copy was stopped.
[[nodiscard]] int copyContent(const SourceFile& from, int to, off_t size, CopyProgress& progress);

} // namespace lapsa
