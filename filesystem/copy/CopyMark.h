// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

namespace lapsa {

/// The mark on a complete copy whose original may still stand: an extended attribute that is set before the copy gets
/// its name, and taken off when it is on the disk that the original is gone. It names the copy's own inode, so that
/// copies of the copy do not carry it, and nothing else: whoever can write to a file can also mark it, so nothing may
/// be believed of it.
inline constexpr const char* copyMark = "user.lapsa.moving";

enum class Marked
{
    Yes,
    No,
    /// The file system, or this kind of entry, takes no such marks.
    Impossible,
};

/// Without effect where marks are impossible or there is no room for one: only the end of the process makes it needed.
/// Returns an `errno` value if the disk fails: then the copy could not be removed either, and would never be known.
[[nodiscard]] int markCopy(int file);
void unmarkCopy(const AtPath& copy);
[[nodiscard]] Marked isMarkedCopy(const AtPath& copy);

} // namespace lapsa
