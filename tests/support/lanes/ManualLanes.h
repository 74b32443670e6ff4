// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <deque>
#include <utility>

namespace lapsa::test {

/// Lanes that run when the test says so, in the thread of the test: what may happen before the work, and between the
/// work and its report, can be played.
class ManualLanes final : public Lanes
{
public:
    enum class Runs
    {
        WhenTheTestSaysSo,
        /// As it is handed over, with its report.
        AtOnce,
    };

    explicit ManualLanes(Runs runs = Runs::WhenTheTestSaysSo)
        : m_runs(runs)
    {}

    std::shared_ptr<LaneJob> run(const QString& path, Work work) override;
    std::shared_ptr<LaneJob> runOn(const QString& lane, Work work, AtTheEnd atTheEnd) override;

    /// Runs everything.
    bool await(const QString& lane, std::chrono::milliseconds patience) override;

    void setRuns(Runs runs) { m_runs = runs; }

    /// The work of the oldest job; the answer is its report, to be called by the test.
    [[nodiscard]] Report workOnNext();
    /// The work of the oldest job, and its report.
    void runNext();
    /// All jobs, also those that reports hand over.
    void runAll();
    /// Whether nothing waits that was not stopped.
    [[nodiscard]] bool isIdle() const;

private:
    std::deque<std::pair<std::shared_ptr<LaneJob>, Work>> m_waiting;
    Runs m_runs;
};

} // namespace lapsa::test
