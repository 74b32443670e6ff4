// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Campaign.h"

namespace lapsa::test {

/// Every scenario without a poor file system on disks whose power is cut when the process has come to a call, before it
/// and behind it: the `every`-th of these points only, shared out among the workers. Nothing at all where the system
/// cannot do it.
[[nodiscard]] Figures runPowerCuts(const FaultWorld& world, int every, int jobs, int worker);

} // namespace lapsa::test
