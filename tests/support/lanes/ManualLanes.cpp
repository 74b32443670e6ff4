// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ManualLanes.h"

#include "LaneJob.h"

#include <algorithm>

namespace lapsa::test {

using namespace Qt::StringLiterals;

std::shared_ptr<LaneJob> ManualLanes::run(const QString& path, Work work)
{
    return runOn(path, std::move(work), AtTheEnd::Drop);
}

std::shared_ptr<LaneJob> ManualLanes::look(const QString&, Work work)
{
    return enqueue(std::move(work), AtTheEnd::Drop, true);
}

std::shared_ptr<LaneJob> ManualLanes::runOn(const QString&, Work work, AtTheEnd atTheEnd)
{
    return enqueue(std::move(work), atTheEnd, false);
}

std::shared_ptr<LaneJob> ManualLanes::enqueue(Work work, AtTheEnd atTheEnd, bool onlyLooks)
{
    auto job = std::make_shared<LaneJob>([this](Report message) {
        if (m_runs == Runs::AtOnce) {
            message();
        } else {
            m_told.push_back(std::move(message));
        }
    });
    if (m_ending && atTheEnd == AtTheEnd::Drop) {
        return job;
    }
    m_waiting.push_back({.job = job, .work = std::move(work), .atTheEnd = atTheEnd, .onlyLooks = onlyLooks});
    if (m_runs == Runs::AtOnce) {
        runNext();
    }
    return job;
}

QString ManualLanes::laneOf(const QString& path)
{
    QString lane = u"/"_s;
    for (const QString& mount : std::as_const(m_mounts)) {
        if ((path == mount || path.startsWith(mount + u'/')) && mount.size() > lane.size()) {
            lane = mount;
        }
    }
    return lane;
}

bool ManualLanes::awaitLooks(std::chrono::milliseconds)
{
    const auto nextLook = [this] { return std::ranges::find_if(m_waiting, &Waiting::onlyLooks); };
    for (auto next = nextLook(); next != m_waiting.end(); next = nextLook()) {
        const Waiting look = std::move(*next);
        m_waiting.erase(next);
        if (!look.job->stopRequested()) {
            workOn(*look.job, look.work)();
        }
    }
    return true;
}

bool ManualLanes::finish(std::chrono::milliseconds)
{
    m_ending = true;
    std::erase_if(m_waiting, [](const Waiting& waiting) { return waiting.atTheEnd == AtTheEnd::Drop; });
    return true;
}

bool ManualLanes::await(const QString&, std::chrono::milliseconds)
{
    runAll();
    return true;
}

Lanes::Report ManualLanes::workOnNext()
{
    while (!m_waiting.empty()) {
        auto [job, work, atTheEnd, onlyLooks] = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (!job->stopRequested()) {
            return workOn(*job, work);
        }
    }
    return {};
}

Lanes::Report ManualLanes::workOn(LaneJob& job, const Work& work)
{
    Report last = work(job);
    return [told = std::exchange(m_told, {}), last = std::move(last)] {
        for (const Report& message : told) {
            message();
        }
        if (last) {
            last();
        }
    };
}

Lanes::Report ManualLanes::takeNext()
{
    auto [job, work, atTheEnd, onlyLooks] = std::move(m_waiting.front());
    m_waiting.pop_front();
    return [this, job = std::move(job), work = std::move(work)] { workOn(*job, work)(); };
}

void ManualLanes::runNext()
{
    if (const Report report = workOnNext()) {
        report();
    }
}

void ManualLanes::runAll()
{
    while (!m_waiting.empty()) {
        runNext();
    }
}

bool ManualLanes::isIdle() const
{
    return std::ranges::all_of(m_waiting, [](const auto& waiting) { return waiting.job->stopRequested(); });
}

} // namespace lapsa::test
