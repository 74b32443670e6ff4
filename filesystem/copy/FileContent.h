// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

namespace lapsa {

class SourceFile;

/// Copies `size` bytes from a file into another, empty one, by sharing them where the file system can. Holes stay
/// holes. Returns an `errno` value: ETXTBSY where the source has become shorter meanwhile, or somebody wants to write.
[[nodiscard]] int copyContent(const SourceFile& from, int to, off_t size);

} // namespace lapsa
