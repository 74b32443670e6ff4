// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneGroups.h"

#include "Lanes.h"

#include <QHash>
#include <QStringView>

#include <cstddef>

namespace lapsa {

std::vector<LaneGroup> groupByLane(Lanes& lanes, qsizetype count,
                                   const std::function<const QString&(qsizetype)>& pathAt)
{
    std::vector<LaneGroup> groups;
    QHash<QString, std::size_t> groupOfLane;
    // Most entries are in the same folder as the one before.
    QStringView lastFolder;
    std::size_t lastGroup = 0;
    for (qsizetype entry = 0; entry < count; ++entry) {
        const QString& path = pathAt(entry);
        const QStringView folder = QStringView(path).left(path.lastIndexOf(u'/') + 1);
        if (groups.empty() || folder != lastFolder) {
            const QString lane = lanes.laneOf(path);
            const auto known = groupOfLane.constFind(lane);
            if (known == groupOfLane.cend()) {
                lastGroup = groups.size();
                groupOfLane.insert(lane, lastGroup);
                groups.push_back({.path = path, .entries = {}});
            } else {
                lastGroup = *known;
            }
            lastFolder = folder;
        }
        groups[lastGroup].entries.push_back(entry);
    }
    return groups;
}

} // namespace lapsa
