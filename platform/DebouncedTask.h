// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

class MainQueue;
class ScheduledTask;

/// A task that runs a fixed delay after the last of a burst of requests (trailing edge, no longest wait). It dies with
/// its owner: a request that is still waiting then does nothing.
class DebouncedTask final
{
public:
    DebouncedTask(MainQueue& queue, std::chrono::milliseconds delay, std::function<void()> task);
    DebouncedTask(const DebouncedTask&) = delete;
    DebouncedTask& operator=(const DebouncedTask&) = delete;
    ~DebouncedTask();

    /// Runs the task one delay from now, in place of the request that may be waiting.
    void schedule();
    /// Drops the waiting request, if any.
    void cancel();
    [[nodiscard]] bool pending() const;

private:
    MainQueue& m_queue;
    std::chrono::milliseconds m_delay;
    std::function<void()> m_task;
    std::unique_ptr<ScheduledTask> m_waiting;
};

} // namespace lapsa
