// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "KnownPaths.h"
#include "ParentCache.h"

#include <optional>

namespace lapsa {

/// The entry of the last goTo() (with WalkDetail::Steps), if it is a folder.
[[nodiscard]] std::optional<WalkedStep> folderAt(const ParentCache& held);

/// Whether a walk with WalkDetail::Steps met all remembered steps where they were.
[[nodiscard]] bool isKnownWay(const fileSystem::PathSteps& known, const WalkedFolder& walked);

/// The same for the entry of the last goTo(), which no other folder may have replaced either.
[[nodiscard]] bool isKnownPlace(const fileSystem::PathSteps& known, const ParentCache& held);

} // namespace lapsa
