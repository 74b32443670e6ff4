// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "Protection.h"
#include "Refusal.h"

#include <sys/stat.h>

#include <optional>

namespace lapsa {

/// Why the entry must not be moved or removed, given its current status (at least STATX_BASIC_STATS); nothing if it may
/// be. Costs nothing unless it is a folder or a link. An error if this cannot be determined.
[[nodiscard]] Result<std::optional<fileSystem::Refusal>> refusalAt(const AtPath& place, const struct statx& status,
                                                                   const fileSystem::Protection& protection);

/// The same as an `errno` value: EPERM if it is protected.
[[nodiscard]] int checkUnprotected(const AtPath& place, const struct statx& status,
                                   const fileSystem::Protection& protection);

} // namespace lapsa
