// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"
#include "Place.h"

#include <sys/stat.h>

namespace lapsa {

/// Looks at the entry that is about to be moved or removed: EPERM where it is protected, ENOENT where there is none.
/// Costs one statx(2) for all but folders.
[[nodiscard]] Result<struct statx> lookAtUnprotected(const Place& place, const fileSystem::Protection& protection);

} // namespace lapsa
