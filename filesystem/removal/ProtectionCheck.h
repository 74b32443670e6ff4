// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"
#include "Place.h"

#include <sys/stat.h>

namespace lapsa {

/// Whether the entry may be moved or removed, by how it just looked (at least STATX_BASIC_STATS): an `errno` value,
/// EPERM where it is protected. Costs nothing for what is no folder and no link.
[[nodiscard]] int checkUnprotected(const Place& place, const struct statx& status,
                                   const fileSystem::Protection& protection);

} // namespace lapsa
