// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <QString>

#include <utility>

namespace lapsa {

class LaneJob;

/// So many items are freed before anybody could notice it.
constexpr qsizetype soonFreed = 1000;

/// Frees long lists on a lane: a hundred thousand items take longer than a turn of the main loop may. They must not be
/// held by anything else on the main thread.
template <typename Garbage>
void freeOnALane(Lanes& lanes, Garbage garbage)
{
    const auto work = [held = std::move(garbage)](LaneJob&) -> Lanes::Report { return {}; };
    lanes.runOn(QStringLiteral("what is no longer needed"), std::move(work), Lanes::AtTheEnd::Drop);
}

} // namespace lapsa
