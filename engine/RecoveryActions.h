// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"
#include "LaneSeries.h"
#include "LapsaRecoveryItem.h"
#include "RecoveryWork.h"

#include <QList>
#include <QUuid>

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <vector>

namespace lapsa {

class Lanes;
struct LaneGroup;

/// What the user has asked of copies in Recovery, and what is under way on the lanes. Main thread only.
class RecoveryActions final
{
public:
    /// Whom the lanes report to. All of it is called on the main thread.
    struct Reports
    {
        /// What became of one copy.
        std::function<void(const RecoveryResult& result)> result;
        /// Before each copy to another file system and each removal of a folder.
        std::function<void()> longWork;
        /// What became of all, in the order of the records; again, for what hung, when that has come back.
        std::function<void(const QList<RecoveryResult>& results)> done;
    };

    /// `lanes` must outlive this object.
    explicit RecoveryActions(Lanes& lanes);
    RecoveryActions(const RecoveryActions&) = delete;
    RecoveryActions& operator=(const RecoveryActions&) = delete;
    /// What is under way reports nothing any more.
    ~RecoveryActions();

    /// Hands the plan's records, at least one, to their lanes: put back on that of the original path, deleted on that
    /// of Recovery. Makes `stops` itself. With lanes that run at once, everything is done on return.
    void handOver(const RecoveryPlan& plan, const Reports& reports);

    [[nodiscard]] bool isWorking() const { return !m_rounds.empty(); }

    /// Whether the copy of this record waits for its turn, or is being put back or deleted.
    [[nodiscard]] bool isUnderWay(const QUuid& id) const;
    /// What a lane has been doing with the copy for more than half a second.
    [[nodiscard]] std::optional<ItemWork> workOn(const QUuid& id) const;
    /// The copy stays in Recovery, as far as it is still there.
    void stop(const QUuid& id);

private:
    struct Part;
    struct Round;

    void addPart(const std::shared_ptr<Round>& round, const RecoveryPlan& plan, const LaneGroup& group);
    [[nodiscard]] static LaneSeries::Step makeStep(const std::shared_ptr<const RecoveryPlan>& plan,
                                                   const std::weak_ptr<Round>& weak,
                                                   const std::vector<qsizetype>& orders);
    void settled(const std::shared_ptr<Round>& round);

    Lanes& m_lanes;
    std::list<std::shared_ptr<Round>> m_rounds;
};

} // namespace lapsa
