// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "Protection.h"
#include "Refusal.h"

#include <sys/stat.h>

#include <optional>

namespace lapsa {

/// Why the entry, by how it just looked (at least STATX_BASIC_STATS), may be neither moved nor removed; nothing where
/// it may. Costs nothing for what is no folder and no link. An error where it cannot be found out.
[[nodiscard]] Result<std::optional<fileSystem::Refusal>> refusalAt(const AtPath& place, const struct statx& status,
                                                                   const fileSystem::Protection& protection);

/// The same as an `errno` value: EPERM where it is protected.
[[nodiscard]] int checkUnprotected(const AtPath& place, const struct statx& status,
                                   const fileSystem::Protection& protection);

} // namespace lapsa
