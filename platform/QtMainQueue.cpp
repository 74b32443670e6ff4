// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "QtMainQueue.h"

#include <QMetaObject>
#include <QTimer>

#include <utility>

namespace lapsa {

namespace {

/// Below this interval, a tick half a second early or late would be noticeable.
constexpr std::chrono::seconds coarseFrom{10};

class TimerTask final : public ScheduledTask
{
public:
    TimerTask(const QObject& context, std::function<void()> task)
        : m_task(std::move(task))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            // A copy, because the task may destroy this object.
            const std::function<void()> running = m_task;
            running();
        });
        QObject::connect(&context, &QObject::destroyed, &m_timer, &QTimer::stop);
    }

    void runOnce(std::chrono::milliseconds delay)
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setSingleShot(true);
        m_timer.start(delay);
    }

    void repeat(std::chrono::milliseconds interval)
    {
        m_timer.setTimerType(interval < coarseFrom ? Qt::PreciseTimer : Qt::VeryCoarseTimer);
        m_timer.start(interval);
    }

private:
    std::function<void()> m_task;
    QTimer m_timer;
};

} // namespace

void QtMainQueue::async(std::function<void()> task)
{
    QMetaObject::invokeMethod(&m_context, std::move(task), Qt::QueuedConnection);
}

std::unique_ptr<ScheduledTask> QtMainQueue::asyncAfter(std::chrono::milliseconds delay, std::function<void()> task)
{
    auto scheduled = std::make_unique<TimerTask>(m_context, std::move(task));
    scheduled->runOnce(delay);
    return scheduled;
}

std::unique_ptr<ScheduledTask> QtMainQueue::repeatEvery(std::chrono::milliseconds interval, std::function<void()> task)
{
    auto scheduled = std::make_unique<TimerTask>(m_context, std::move(task));
    scheduled->repeat(interval);
    return scheduled;
}

} // namespace lapsa
