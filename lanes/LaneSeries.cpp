// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneSeries.h"

#include "LaneJob.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <utility>

namespace lapsa {

namespace {

/// So many entries can hang before the series must hand over another job.
constexpr std::size_t mostJobs = 32;

std::int64_t steadyNow()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

/// Shared with the lane. Jobs that hang keep it alive after the series is gone.
struct LaneSeries::Shared
{
    std::atomic<std::size_t> next = 0;
    std::size_t count = 0;
    std::function<Step()> makeStep;
    // Main thread only:
    std::function<void()> settled;
    std::size_t reported = 0;
    /// Once closed, how many were begun.
    std::optional<std::size_t> begun;
    LaneSeries* series = nullptr;
};

struct LaneSeries::Job
{
    static constexpr std::int64_t none = -1;

    std::shared_ptr<LaneJob> job;
    std::atomic<std::int64_t> entry = none;
    /// Nanoseconds of the steady clock.
    std::atomic<std::int64_t> since = 0;
};

LaneSeries::LaneSeries(Lanes& lanes, Plan plan)
    : m_lanes(lanes)
    , m_path(std::move(plan.path))
    , m_onlyLooks(plan.onlyLooks)
    , m_shared(std::make_shared<Shared>())
{
    m_shared->count = plan.count;
    m_shared->makeStep = std::move(plan.makeStep);
    m_shared->settled = std::move(plan.settled);
    m_shared->series = this;
}

LaneSeries::~LaneSeries()
{
    close();
    m_shared->series = nullptr;
}

void LaneSeries::start()
{
    const std::shared_ptr<Shared> shared = m_shared; // the series may be gone after any of these
    const std::size_t jobs = std::min(shared->count, mostJobs) + 1;
    for (std::size_t job = 0; job < jobs && shared->series != nullptr && shared->next < shared->count; ++job) {
        submit();
    }
}

void LaneSeries::submit()
{
    auto mine = std::make_shared<Job>();
    m_jobs.push_back(mine);
    const auto work = [shared = m_shared, mine](LaneJob& job) { return run(shared, *mine, job); };
    // With lanes that run at once, the series may be gone when this returns.
    mine->job = m_onlyLooks ? m_lanes.look(m_path, work) : m_lanes.run(m_path, work);
}

Lanes::Report LaneSeries::run(const std::shared_ptr<Shared>& shared, Job& mine, LaneJob& job)
{
    Step step;
    // A job that was set aside ends here when it comes back: another one goes on.
    while (!job.stopRequested() && job.state() != LaneJob::State::Hanging) {
        const std::size_t entry = shared->next.fetch_add(1);
        if (entry >= shared->count) {
            break;
        }
        job.report(0, 0);
        mine.since = steadyNow();
        mine.entry = std::int64_t(entry);
        if (!step) {
            step = shared->makeStep();
        }
        Lanes::Report report = step(entry, job);
        mine.entry = Job::none;
        job.tell([shared, report = std::move(report)] {
            ++shared->reported;
            if (report) {
                report();
            }
        });
    }
    return [shared, goesOn = !job.stopRequested()] {
        if (shared->series != nullptr) {
            shared->series->jobEnded(goesOn);
        }
    };
}

void LaneSeries::jobEnded(bool goesOn)
{
    ++m_ended;
    const std::size_t hang = hanging();
    if (m_shared->next < m_shared->count) {
        if (goesOn && m_jobs.size() == m_ended + hang) {
            submit();
        }
        return;
    }
    if (m_shared->reported + hang < begun() || m_settledAt == m_shared->reported) {
        return;
    }
    m_settledAt = m_shared->reported;
    if (isDone()) {
        m_shared->makeStep = nullptr; // nothing asks for it any more; what it holds can be much
    }
    const auto settled = m_shared->settled; // it may destroy the series
    settled();
}

std::size_t LaneSeries::close()
{
    const std::size_t next = m_shared->next.exchange(m_shared->count);
    if (!m_shared->begun) {
        m_shared->begun = std::min(next, m_shared->count);
    }
    return *m_shared->begun;
}

std::size_t LaneSeries::begun() const
{
    return m_shared->begun.value_or(m_shared->count);
}

std::size_t LaneSeries::hanging() const
{
    return std::size_t(std::ranges::count_if(m_jobs, [](const std::shared_ptr<Job>& job) {
        return job->job && job->job->state() == LaneJob::State::Hanging && job->entry != Job::none;
    }));
}

bool LaneSeries::isDone() const
{
    return m_shared->next >= m_shared->count && m_shared->reported == begun();
}

std::vector<LaneSeries::Working> LaneSeries::working() const
{
    std::vector<Working> working;
    for (const std::shared_ptr<Job>& job : m_jobs) {
        const std::int64_t entry = job->entry;
        if (job->job && entry != Job::none) {
            working.push_back({.job = job->job,
                               .entry = std::size_t(entry),
                               .since = std::chrono::nanoseconds(steadyNow() - job->since)});
        }
    }
    return working;
}

} // namespace lapsa
