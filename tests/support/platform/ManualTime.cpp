// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ManualTime.h"

#include <algorithm>
#include <utility>

namespace lapsa::test {

using namespace std::chrono_literals;

struct ManualTime::Entry
{
    std::chrono::microseconds due{0};
    /// Zero for a task that runs once.
    std::chrono::microseconds interval{0};
    std::uint64_t order = 0;
    std::function<void()> task;
    bool cancelled = false;
};

class ManualTime::Handle final : public ScheduledTask
{
public:
    explicit Handle(std::shared_ptr<Entry> entry)
        : m_entry(std::move(entry))
    {}

    ~Handle() override { m_entry->cancelled = true; }

private:
    std::shared_ptr<Entry> m_entry;
};

ManualTime::ManualTime()
    : m_now(std::chrono::sys_days{std::chrono::year{2026} / std::chrono::March / 1} + 14h + 5min + 9s)
{}

ManualTime::~ManualTime() = default;

void ManualTime::async(std::function<void()> task)
{
    m_entries.push_back(
        std::make_shared<Entry>(Entry{.due = m_elapsed, .order = m_nextOrder++, .task = std::move(task)}));
}

std::unique_ptr<ScheduledTask> ManualTime::asyncAfter(std::chrono::milliseconds delay, std::function<void()> task)
{
    return add(delay, 0us, std::move(task));
}

std::unique_ptr<ScheduledTask> ManualTime::repeatEvery(std::chrono::milliseconds interval, std::function<void()> task)
{
    return add(interval, interval, std::move(task));
}

void ManualTime::advance(std::chrono::microseconds duration)
{
    const auto until = m_elapsed + duration;
    while (const auto entry = nextDue(until)) {
        m_now += entry->due - m_elapsed;
        m_elapsed = entry->due;
        if (entry->interval > 0us) {
            entry->due += entry->interval;
            entry->order = m_nextOrder++;
        } else {
            std::erase(m_entries, entry);
        }
        entry->task();
    }
    m_now += until - m_elapsed;
    m_elapsed = until;
}

std::size_t ManualTime::waitingTasks() const
{
    return static_cast<std::size_t>(std::ranges::count(m_entries, false, &Entry::cancelled));
}

std::unique_ptr<ScheduledTask> ManualTime::add(std::chrono::microseconds delay, std::chrono::microseconds interval,
                                               std::function<void()> task)
{
    auto entry = std::make_shared<Entry>(
        Entry{.due = m_elapsed + delay, .interval = interval, .order = m_nextOrder++, .task = std::move(task)});
    m_entries.push_back(entry);
    return std::make_unique<Handle>(std::move(entry));
}

std::shared_ptr<ManualTime::Entry> ManualTime::nextDue(std::chrono::microseconds until)
{
    std::erase_if(m_entries, [](const auto& entry) { return entry->cancelled; });
    const auto first =
        std::ranges::min_element(m_entries, {}, [](const auto& entry) { return std::pair(entry->due, entry->order); });
    return first != m_entries.end() && (*first)->due <= until ? *first : nullptr;
}

} // namespace lapsa::test
