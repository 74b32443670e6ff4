// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace lapsa {

/// A task that waits on the main queue. Destroying it cancels it: a cancelled task never runs.
class ScheduledTask
{
public:
    ScheduledTask() = default;
    ScheduledTask(const ScheduledTask&) = delete;
    ScheduledTask& operator=(const ScheduledTask&) = delete;
    virtual ~ScheduledTask() = default;
};

/// The main thread's event loop. Every task runs on the main thread, one after the other.
class MainQueue
{
public:
    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    /// Runs `task` on a later turn of the event loop. It cannot be cancelled: it has to look whether what it needs is
    /// still there. May be called from any thread.
    virtual void async(std::function<void()> task) = 0;

    /// Runs `task` once, `delay` from now, unless the returned handle is destroyed before.
    [[nodiscard]] virtual std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay,
                                                                    std::function<void()> task) = 0;

    /// Runs `task` every `interval`, first after one interval, until the returned handle is destroyed.
    [[nodiscard]] virtual std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds interval,
                                                                     std::function<void()> task) = 0;
};

} // namespace lapsa
