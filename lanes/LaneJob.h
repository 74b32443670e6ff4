// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace lapsa {

/// One piece of work on a lane, shared by the main thread and the lane. All members are thread-safe.
class LaneJob final
{
public:
    /// Runs on the main thread.
    using Message = std::function<void()>;

    /// `deliver` passes a message to the main thread, which runs messages in order.
    explicit LaneJob(std::function<void(Message)> deliver)
        : m_deliver(std::move(deliver))
    {}

    enum class State
    {
        Waiting,
        Running,
        /// It has given no sign of life for too long. It may still recover.
        Hanging,
        /// Includes work stopped before it began.
        Finished,
    };

    [[nodiscard]] State state() const { return m_state; }

    /// Waiting work never begins and reports nothing. Running work is asked to end at the next point where everything
    /// is consistent; it reports its outcome as usual.
    void stop() { m_stopRequested = true; }

    [[nodiscard]] bool stopRequested() const { return m_stopRequested; }

    /// Sends a message while the work goes on. Runs before the report of the work. Only for the lane.
    void tell(Message message) { m_deliver(std::move(message)); }

    /// Reports progress in the work's own unit, such as bytes or entries. Also a sign of life.
    void report(std::int64_t done, std::int64_t total);
    /// A sign of life for work that has no progress to report: after two seconds without one, work counts as hanging.
    void alive();

    /// Whether it has given no sign of life for this long.
    [[nodiscard]] bool silentFor(std::chrono::nanoseconds span) const;

    [[nodiscard]] std::int64_t done() const { return m_done; }

    /// 0 if nothing was reported.
    [[nodiscard]] std::int64_t total() const { return m_total; }

private:
    friend class ThreadLanes;

    std::function<void(Message)> m_deliver;
    std::atomic<State> m_state = State::Waiting;
    std::atomic<bool> m_stopRequested = false;
    std::atomic<std::int64_t> m_done = 0;
    std::atomic<std::int64_t> m_total = 0;
    /// Nanoseconds of the steady clock.
    std::atomic<std::int64_t> m_lastSign = 0;
};

} // namespace lapsa
