// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <QStringList>

#include <cstddef>
#include <deque>

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

    std::shared_ptr<LaneJob> look(const QString& path, Work work) override;

    /// The longest of the mounts that the test has named, or "/".
    [[nodiscard]] QString laneOf(const QString& path) override;
    std::shared_ptr<LaneJob> runOn(const QString& lane, Work work, AtTheEnd atTheEnd) override;

    /// Runs the looks that wait, and those that they ask for.
    bool awaitLooks(std::chrono::milliseconds patience) override;
    /// Drops everything that was not begun.
    bool finish(std::chrono::milliseconds patience) override;
    /// Runs everything.
    bool await(const QString& lane, std::chrono::milliseconds patience) override;

    void setRuns(Runs runs) { m_runs = runs; }

    /// Another mount, as far as the lanes are concerned.
    void addMount(const QString& path) { m_mounts.push_back(path); }

    /// The work of the oldest job; the answer is what it tells and reports, to be called by the test.
    [[nodiscard]] Report workOnNext();
    /// Takes the oldest job out of its turn; the answer does its work, and its report.
    [[nodiscard]] Report takeNext();
    /// The work of the oldest job, and its report.
    void runNext();
    /// All jobs, also those that reports hand over.
    void runAll();

    /// How many jobs wait.
    [[nodiscard]] std::size_t waiting() const { return m_waiting.size(); }

    /// Whether nothing waits that was not stopped.
    [[nodiscard]] bool isIdle() const;

private:
    [[nodiscard]] Report workOn(LaneJob& job, const Work& work);

    struct Waiting
    {
        std::shared_ptr<LaneJob> job;
        Work work;
        AtTheEnd atTheEnd = AtTheEnd::Drop;
        bool onlyLooks = false;
    };

    std::shared_ptr<LaneJob> enqueue(Work work, AtTheEnd atTheEnd, bool onlyLooks);

    std::deque<Waiting> m_waiting;
    bool m_ending = false;
    /// What the work under way tells, when the test takes its report into its own hands.
    std::deque<Report> m_told;
    QStringList m_mounts;
    Runs m_runs;
};

} // namespace lapsa::test
