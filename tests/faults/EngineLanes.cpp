// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "EngineLanes.h"

#include "ManualLanes.h"
#include "ManualTime.h"
#include "ThreadLanes.h"

#include <chrono>
#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <utility>

namespace lapsa::test {

using namespace std::chrono_literals;

namespace {

volatile std::sig_atomic_t endIsAskedFor = 0;

void askForTheEnd(int)
{
    endIsAskedFor = 1;
}

} // namespace

/// What the threads have for the main thread.
class EngineLanes::Queue final : public MainQueue
{
public:
    explicit Queue(ManualTime& time)
        : m_time(time)
    {}

    void async(std::function<void()> task) override
    {
        const std::lock_guard lock(m_mutex);
        m_tasks.push_back(std::move(task));
        m_something.notify_one();
    }

    [[nodiscard]] std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay,
                                                            std::function<void()> task) override
    {
        return m_time.asyncAfter(delay, std::move(task));
    }

    /// Of the lanes, which repeat something for as long as they have work.
    [[nodiscard]] std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds,
                                                             std::function<void()> task) override
    {
        return std::make_unique<Repeated>(*this, std::move(task));
    }

    /// Whether the lanes work, or have reported something that has not run yet.
    [[nodiscard]] bool isBusy()
    {
        const std::lock_guard lock(m_mutex);
        return m_repeated != nullptr || !m_tasks.empty();
    }

    /// Runs the oldest task. False if there was none for a millisecond.
    bool runNext()
    {
        std::unique_lock lock(m_mutex);
        if (!m_something.wait_for(lock, 1ms, [this] { return !m_tasks.empty(); })) {
            return false;
        }
        const auto task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        task();
        return true;
    }

    void repeat() const
    {
        if (m_repeated != nullptr) {
            const auto task = m_repeated->task; // it may end itself
            task();
        }
    }

private:
    struct Repeated final : ScheduledTask
    {
        Repeated(Queue& owner, std::function<void()> what)
            : queue(owner)
            , task(std::move(what))
        {
            owner.m_repeated = this;
        }

        ~Repeated() override { queue.m_repeated = nullptr; }

        Queue& queue;
        std::function<void()> task;
    };

    ManualTime& m_time;
    Repeated* m_repeated = nullptr;
    std::mutex m_mutex;
    std::condition_variable m_something;
    std::deque<std::function<void()>> m_tasks;
};

EngineLanes::EngineLanes(ManualTime& time, Threads threads)
    : m_time(time)
{
    if (threads == Threads::No) {
        m_lanes = std::make_unique<ManualLanes>(ManualLanes::Runs::AtOnce);
        return;
    }
    struct sigaction action = {};
    action.sa_handler = askForTheEnd;
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGUSR1, &action, nullptr);
    m_queue = std::make_unique<Queue>(time);
    m_lanes = std::make_unique<ThreadLanes>(*m_queue);
}

EngineLanes::~EngineLanes() = default;

bool EngineLanes::settle(const std::function<void()>& afterTask)
{
    if (!m_queue) {
        return true;
    }
    m_time.settle();
    afterTask();
    while (m_queue->isBusy()) {
        if (endIsAskedFor != 0) {
            return false;
        }
        if (m_queue->runNext()) {
            m_time.settle();
            afterTask();
        } else {
            m_queue->repeat();
        }
    }
    return true;
}

} // namespace lapsa::test
