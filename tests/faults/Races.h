// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Campaign.h"

namespace lapsa::test {

class FaultWorld;

/// Passes that race against somebody who swaps files for links, folders for links and names for other names, so many
/// rounds each. What the links lead to must stay as it is, and nothing of either side may be lost or overwritten.
[[nodiscard]] Figures runRaces(const FaultWorld& world, int rounds);

} // namespace lapsa::test
