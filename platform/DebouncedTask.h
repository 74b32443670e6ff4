// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

class MainQueue;
class ScheduledTask;

/// A task that runs a fixed delay after the last request of a burst (trailing edge, no maximum wait). Destroying this
/// object cancels a pending request.
class DebouncedTask final
{
public:
    DebouncedTask(MainQueue& queue, std::chrono::milliseconds delay, std::function<void()> task);
    DebouncedTask(const DebouncedTask&) = delete;
    DebouncedTask& operator=(const DebouncedTask&) = delete;
    ~DebouncedTask();

    /// Runs the task one delay from now, replacing any pending request.
    void schedule();
    /// Drops the pending request, if any.
    void cancel();
    [[nodiscard]] bool pending() const;

private:
    MainQueue& m_queue;
    std::chrono::milliseconds m_delay;
    std::function<void()> m_task;
    std::unique_ptr<ScheduledTask> m_waiting;
};

} // namespace lapsa
