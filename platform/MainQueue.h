// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

/// A task waiting on the main queue. Destroying this object cancels the task: a cancelled task never runs.
class ScheduledTask
{
public:
    ScheduledTask() = default;
    ScheduledTask(const ScheduledTask&) = delete;
    ScheduledTask& operator=(const ScheduledTask&) = delete;
    virtual ~ScheduledTask() = default;
};

/// The main thread's event loop. Tasks run on the main thread, one after another.
class MainQueue
{
public:
    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    /// Runs `task` on a later turn of the event loop. The task cannot be cancelled: it must check that the objects it
    /// uses still exist. May be called from any thread.
    virtual void async(std::function<void()> task) = 0;

    /// Runs `task` once, `delay` from now, unless the returned handle is destroyed first.
    [[nodiscard]] virtual std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay,
                                                                    std::function<void()> task) = 0;

    /// Runs `task` every `interval`, first after one interval, until the returned handle is destroyed.
    [[nodiscard]] virtual std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds interval,
                                                                     std::function<void()> task) = 0;
};

} // namespace lapsa
