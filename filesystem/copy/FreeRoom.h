// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/stat.h>

#include <cstdint>

namespace lapsa {

/// The least room, in bytes, that a copy of a file takes on another file system without compression: holes take none.
[[nodiscard]] std::int64_t leastRoomOf(const struct statx& status);

/// Whether a copy that takes at least `bytes` is sure not to fit on the file system of an open folder. False if that is
/// uncertain: if it may compress, share blocks or free more when it runs full, or somebody else keeps the count.
[[nodiscard]] bool isSureNotToFit(std::int64_t bytes, int folder);

} // namespace lapsa
