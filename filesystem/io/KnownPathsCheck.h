// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "KnownPaths.h"
#include "ParentCache.h"

#include <optional>

namespace lapsa {

/// The entry that was gone to (with WalkDetail::Steps), if it is a folder.
[[nodiscard]] std::optional<WalkedStep> folderAt(const ParentCache& held);

/// Whether a walk with WalkDetail::Steps met all that was remembered, in the place where it was.
[[nodiscard]] bool isKnownWay(const fileSystem::PathSteps& known, const WalkedFolder& walked);

/// The same of the entry that was gone to: no other folder may stand in its place either.
[[nodiscard]] bool isKnownPlace(const fileSystem::PathSteps& known, const ParentCache& held);

} // namespace lapsa
