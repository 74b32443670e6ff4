// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <vector>

namespace lapsa {

class Lanes;

/// Entries that share a lane.
struct LaneGroup
{
    /// Any path of the lane.
    QString path;
    /// Increasing.
    std::vector<qsizetype> entries;
};

/// Groups `count` entries by their lanes, the lane of the first entry first. Judges by the text of their absolute
/// paths.
[[nodiscard]] std::vector<LaneGroup> groupByLane(Lanes& lanes, qsizetype count,
                                                 const std::function<const QString&(qsizetype)>& pathAt);

} // namespace lapsa
