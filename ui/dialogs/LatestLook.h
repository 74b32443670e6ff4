// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <QString>

#include <list>
#include <memory>
#include <optional>

namespace lapsa {

/// Asks lanes to look at folders when only the answer to the latest question counts: earlier answers are dropped, and
/// earlier looks asked to stop. While a look at a folder has not come back, the folder is not asked about again: a disk
/// that does not answer holds up no more than one look. Main thread only.
class LatestLook final
{
public:
    struct Question
    {
        /// The absolute path of the folder that is looked at or into.
        QString folder;
        /// Names the lane.
        QString path;
        /// Its report runs only if nothing else has been asked since. May ask again, and may destroy the asking object.
        Lanes::Work work;
    };

    /// `lanes` must outlive this object.
    explicit LatestLook(Lanes& lanes);
    LatestLook(const LatestLook&) = delete;
    LatestLook& operator=(const LatestLook&) = delete;
    /// Nothing is reported from then on.
    ~LatestLook();

    void ask(Question question);
    /// Nothing counts any more.
    void drop();

    /// Whether an answer that counts is still to come.
    [[nodiscard]] bool isAsking() const { return m_latest != nullptr || m_waiting.has_value(); }

private:
    struct Asked
    {
        QString folder;
        std::shared_ptr<LaneJob> job;
    };

    void submit(Question question);
    void answered(const std::shared_ptr<Asked>& asked, const Lanes::Report& report);
    [[nodiscard]] bool isUnderWay(const QString& folder) const;

    Lanes& m_lanes;
    /// Null once this object is gone.
    std::shared_ptr<LatestLook*> m_self;
    std::list<std::shared_ptr<Asked>> m_underWay;
    std::shared_ptr<Asked> m_latest;
    std::optional<Question> m_waiting;
};

} // namespace lapsa
