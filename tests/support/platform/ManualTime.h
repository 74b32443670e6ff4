// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Clock.h"
#include "MainQueue.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lapsa::test {

/// A clock and a main queue that are moved by hand, together: no test waits.
class ManualTime final : public Clock, public MainQueue
{
public:
    ManualTime();
    ~ManualTime() override;

    [[nodiscard]] TimePoint now() const override { return m_now; }

    void async(std::function<void()> task) override;
    [[nodiscard]] std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay,
                                                            std::function<void()> task) override;
    [[nodiscard]] std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds interval,
                                                             std::function<void()> task) override;

    /// Lets the time pass, running what becomes due in its order and at its time.
    void advance(std::chrono::microseconds duration);

    /// Runs what is due now.
    void settle() { advance(std::chrono::microseconds::zero()); }

    /// Moves the clock alone, as when somebody sets it: nothing becomes due by it.
    void setClock(TimePoint now) { m_now = now; }

    /// How many tasks wait for their time.
    [[nodiscard]] std::size_t waitingTasks() const;

private:
    struct Entry;
    class Handle;

    [[nodiscard]] std::unique_ptr<ScheduledTask> add(std::chrono::microseconds delay,
                                                     std::chrono::microseconds interval, std::function<void()> task);
    [[nodiscard]] std::shared_ptr<Entry> nextDue(std::chrono::microseconds until);

    TimePoint m_now;
    /// The queue's own time: it only goes forward, whatever is done to the clock.
    std::chrono::microseconds m_elapsed{0};
    std::uint64_t m_nextOrder = 0;
    std::vector<std::shared_ptr<Entry>> m_entries;
};

} // namespace lapsa::test
