// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Campaign.h"

namespace lapsa::test {

/// Every scenario that writes, on a file system with room for so and so many blocks of 4 KiB, each number once;
/// `every`-th only.
[[nodiscard]] Figures runOnFullDisks(const FaultWorld& world, int every);

/// On file systems and folders that are read-only, and with `Recovery` on a mount of its own.
[[nodiscard]] Figures runOnOtherMounts(const FaultWorld& world);

/// With folders that give no rights. Only an ordinary user meets that: to be called in his process.
[[nodiscard]] Figures runWithoutRights(const FaultWorld& world);

} // namespace lapsa::test
