// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

namespace lapsa {

/// Copies `size` bytes from one open file into another, empty one, by sharing them where the file system can. Holes
/// stay holes. Returns an `errno` value: EBUSY where the source has become shorter meanwhile.
[[nodiscard]] int copyContent(int from, int to, off_t size);

} // namespace lapsa
