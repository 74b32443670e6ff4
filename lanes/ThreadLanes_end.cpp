// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneJob.h"
#include "ThreadLanes_state.h"

#include <algorithm>
#include <chrono>

namespace lapsa {

bool ThreadLanes::await(const QString& lane, std::chrono::milliseconds patience)
{
    const QString name = u':' + lane;
    std::unique_lock lock(m_shared->mutex);
    const auto isOfLane = [&name](const auto& active) { return active->name == name; };
    const bool ended = m_shared->threadEnded.wait_for(lock, patience,
                                                      [&] { return std::ranges::none_of(m_shared->active, isOfLane); });
    lock.unlock();
    while (const Report report = nextReport(&name)) {
        report();
    }
    return ended;
}

bool ThreadLanes::awaitLooks(std::chrono::milliseconds patience)
{
    const auto end = std::chrono::steady_clock::now() + patience;
    const auto isLook = [](const auto& active) { return active->onlyLooks && !active->setAside; };
    const auto noneIsLeft = [&] { return std::ranges::none_of(m_shared->active, isLook); };
    bool reported = true;
    bool ended = false;
    while (reported) { // a report may ask for another look
        std::unique_lock lock(m_shared->mutex);
        ended = m_shared->threadEnded.wait_until(lock, end, noneIsLeft);
        lock.unlock();
        reported = false;
        while (const Report report = nextReport()) {
            report();
            reported = ended;
        }
    }
    return ended;
}

bool ThreadLanes::finish(std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->ending = true;
    askToEnd();
    const bool ended =
        m_shared->threadEnded.wait_for(lock, patience, [&] { return m_shared->threads == m_shared->threadsSetAside; });
    lock.unlock();
    while (const Report report = nextReport()) {
        report();
    }
    return ended;
}

} // namespace lapsa
