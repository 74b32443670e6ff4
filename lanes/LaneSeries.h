// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lapsa {

/// Works on many entries of one lane, in order. An entry that hangs delays only itself: another job of the series goes
/// on with the next one. Main thread only.
class LaneSeries final
{
public:
    /// Works on one entry, on the lane. Its report runs on the main thread before the next one's.
    using Step = std::function<Lanes::Report(std::size_t entry, LaneJob& job)>;

    struct Plan
    {
        /// Names the lane.
        QString path;
        std::size_t count = 0;
        /// Whether it only looks; see Lanes::look().
        bool onlyLooks = false;
        /// Called on the lane by each job that begins an entry: what a step keeps open belongs to one thread.
        std::function<Step()> makeStep;
        /// Called on the main thread when all entries that were begun have reported, except those that hang; again each
        /// time one of these has reported. May destroy the series.
        std::function<void()> settled;
    };

    LaneSeries(Lanes& lanes, Plan plan);
    LaneSeries(const LaneSeries&) = delete;
    LaneSeries& operator=(const LaneSeries&) = delete;
    /// Nothing more begins; what is under way still reports, but nothing is settled any more.
    ~LaneSeries();

    /// Hands the work over. With lanes that run at once, everything has been reported and settled on return.
    void start();

    /// No further entry begins. Returns the first that never will.
    std::size_t close();

    /// Whether every entry that was begun has reported.
    [[nodiscard]] bool isDone() const;

    struct Working
    {
        std::shared_ptr<const LaneJob> job;
        std::size_t entry = 0;
        std::chrono::nanoseconds since{};
    };

    /// The entries that are worked on now.
    [[nodiscard]] std::vector<Working> working() const;

private:
    struct Shared;
    struct Job;

    static Lanes::Report run(const std::shared_ptr<Shared>& shared, Job& mine, LaneJob& job);
    void submit();
    void jobEnded(bool goesOn);
    [[nodiscard]] std::size_t begun() const;
    [[nodiscard]] std::size_t hanging() const;

    Lanes& m_lanes;
    QString m_path;
    bool m_onlyLooks;
    std::shared_ptr<Shared> m_shared;
    std::vector<std::shared_ptr<Job>> m_jobs;
    std::size_t m_ended = 0;
    /// How many had reported when the series was last settled.
    std::optional<std::size_t> m_settledAt;
};

} // namespace lapsa
