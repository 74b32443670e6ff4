// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Campaign.h"

#include <QByteArray>

namespace lapsa::test {

/// The points at which the power is cut.
struct CutSelection
{
    /// Only those of this scenario; empty for all.
    QByteArray scenario;
    /// Each `every`-th point.
    int every = 1;
    /// The points are shared out: this is worker `worker` of `jobs`.
    int jobs = 1;
    int worker = 0;
};

/// Scenarios without a poor file system on disks whose power is cut when the process has come to a call, before it and
/// behind it. Nothing at all where the system cannot do it.
[[nodiscard]] Figures runPowerCuts(const FaultWorld& world, const CutSelection& selection);

} // namespace lapsa::test
