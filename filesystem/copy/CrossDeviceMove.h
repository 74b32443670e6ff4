// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <sys/stat.h>

#include <functional>

namespace lapsa {

/// Moves an entry to another file system: a copy that becomes visible only when it is whole and on the disk, then the
/// removal of the source. Never overwrites. Returns an `errno` value; after a failure the source is whole and nothing
/// stands at `to`. ETXTBSY: somebody writes to it, or did meanwhile, and a later try may succeed. Calls `begins` before
/// the first byte is copied; never for a file that somebody has open for writing.
[[nodiscard]] int moveAcross(const AtPath& from, const struct statx& status, const AtPath& to,
                             const std::function<void()>& begins);

} // namespace lapsa
