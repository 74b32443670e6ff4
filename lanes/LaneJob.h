// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

namespace lapsa {

/// One piece of work on a lane, shared by the main thread and the lane. Every member may be called from any thread.
class LaneJob final
{
public:
    enum class State
    {
        Waiting,
        Running,
        /// It has given no sign of life for too long. It may still come back.
        Hanging,
        /// Also what was stopped before it began.
        Finished,
    };

    [[nodiscard]] State state() const { return m_state; }

    /// What waits never begins, and nobody hears of it. What runs is asked to end at the next place where everything is
    /// whole; its outcome is reported as ever.
    void stop() { m_stopRequested = true; }

    [[nodiscard]] bool stopRequested() const { return m_stopRequested; }

    /// How far the work is, in a unit of its own, for instance bytes or entries. A sign of life.
    void report(std::int64_t done, std::int64_t total);
    /// A sign of life, for work that has nothing to report: without one for two seconds it counts as hanging.
    void alive();

    /// Whether it has given no sign of life for so long.
    [[nodiscard]] bool silentFor(std::chrono::nanoseconds span) const;

    [[nodiscard]] std::int64_t done() const { return m_done; }

    /// 0 where nothing was reported.
    [[nodiscard]] std::int64_t total() const { return m_total; }

private:
    friend class ThreadLanes;

    std::atomic<State> m_state = State::Waiting;
    std::atomic<bool> m_stopRequested = false;
    std::atomic<std::int64_t> m_done = 0;
    std::atomic<std::int64_t> m_total = 0;
    /// Nanoseconds of the steady clock.
    std::atomic<std::int64_t> m_lastSign = 0;
};

} // namespace lapsa
