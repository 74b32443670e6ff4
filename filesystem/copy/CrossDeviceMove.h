// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <sys/stat.h>

namespace lapsa {

class CopyProgress;

/// Moves an entry to another file system: makes a copy that becomes visible only when it is complete and on the disk,
/// then removes the source. Never overwrites. Returns an `errno` value; after a failure the source is intact and
/// nothing is at `to`. ETXTBSY: somebody is writing to it, or wrote to it meanwhile; a later try may succeed.
/// moveUnfinished: the copy stays at `to`, and all or a part of the source is still there too, or nobody can tell.
/// ECANCELED: it was stopped, which is possible until the copy is complete. Begins the progress before it copies the
/// first byte, but never for a file that somebody has open for writing. The copy of a file or folder stays marked; see
/// UnsettledCopies.
[[nodiscard]] int moveAcross(const AtPath& from, const struct statx& status, const AtPath& to, CopyProgress& progress);

} // namespace lapsa
