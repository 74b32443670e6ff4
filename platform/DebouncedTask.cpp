// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DebouncedTask.h"

#include "MainQueue.h"

#include <utility>

namespace lapsa {

DebouncedTask::DebouncedTask(MainQueue& queue, std::chrono::milliseconds delay, std::function<void()> task)
    : m_queue(queue)
    , m_delay(delay)
    , m_task(std::move(task))
{}

DebouncedTask::~DebouncedTask() = default;

void DebouncedTask::schedule()
{
    m_waiting = m_queue.asyncAfter(m_delay, [this] {
        // Kept alive until the end of this call: the task may schedule the next one.
        const auto running = std::move(m_waiting);
        m_task();
    });
}

void DebouncedTask::cancel()
{
    m_waiting.reset();
}

bool DebouncedTask::pending() const
{
    return m_waiting != nullptr;
}

} // namespace lapsa
