// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ThreadLanes.h"

#include "LaneJob.h"
#include "MainQueue.h"
#include "ThreadLanes_state.h"

#include <QElapsedTimer>
#include <QStringList>

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

namespace lapsa {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds longestWatchInterval = 500ms;
/// In milliseconds. Reports run on the main thread, which also draws: after this time, the rest wait for its next turn.
constexpr qint64 longestTurn = 2;

/// Before the mount point, in the name of its lane for looks. No mount point begins with a colon.
const QString lookLane = QStringLiteral(":looks ");

QString mountPointOf(const QString& lane)
{
    return lane.startsWith(lookLane) ? lane.sliced(lookLane.size()) : lane;
}

} // namespace

ThreadLanes::ThreadLanes(MainQueue& mainQueue, const Bounds& bounds)
    : m_mainQueue(mainQueue)
    , m_shared(std::make_shared<Shared>())
{
    m_shared->lanes = this;
    m_shared->bounds = bounds;
}

ThreadLanes::~ThreadLanes()
{
    std::deque<Finished> lost;
    const std::lock_guard lock(m_shared->mutex);
    m_shared->lanes = nullptr;
    lost.swap(m_shared->finished); // destroyed without the mutex
    askToEnd();
}

/// Call with the mutex held.
void ThreadLanes::askToEnd()
{
    for (const std::shared_ptr<Lane>& lane : m_shared->active) {
        std::erase_if(lane->waiting, [](const Piece& piece) { return piece.atTheEnd == AtTheEnd::Drop; });
        if (lane->current) {
            lane->current->stop();
        }
    }
}

std::shared_ptr<LaneJob> ThreadLanes::run(const QString& path, Work work)
{
    return enqueue(m_mountPoints.holding(path), std::move(work), AtTheEnd::Drop);
}

std::shared_ptr<LaneJob> ThreadLanes::look(const QString& path, Work work)
{
    return enqueue(lookLane + m_mountPoints.holding(path), std::move(work), AtTheEnd::Drop);
}

QString ThreadLanes::laneOf(const QString& path)
{
    return m_mountPoints.holding(path);
}

// No mount point begins with a colon.
std::shared_ptr<LaneJob> ThreadLanes::runOn(const QString& lane, Work work, AtTheEnd atTheEnd)
{
    return enqueue(u':' + lane, std::move(work), atTheEnd);
}

std::shared_ptr<LaneJob> ThreadLanes::enqueue(const QString& name, Work work, AtTheEnd atTheEnd)
{
    auto job = std::make_shared<LaneJob>(
        [weak = std::weak_ptr(m_shared), name](Report message) { deliver(weak, name, std::move(message)); });
    if (!m_watch) {
        const auto interval = std::min(longestWatchInterval, m_shared->bounds.hangsAfter / 4);
        m_watch = m_mainQueue.repeatEvery(interval, [this] { watch(); });
    }
    const std::lock_guard lock(m_shared->mutex);
    if (m_shared->ending && atTheEnd == AtTheEnd::Drop) {
        return job;
    }
    auto& active = m_shared->active;
    auto found = std::ranges::find_if(active, [&](const auto& lane) { return !lane->setAside && lane->name == name; });
    if (found == active.end()) {
        active.push_back(std::make_shared<Lane>(
            Lane{.name = name, .onlyLooks = name.startsWith(lookLane), .waiting = {}, .current = nullptr}));
        found = std::prev(active.end());
    }
    (*found)->waiting.push_back({.job = job, .work = std::move(work), .atTheEnd = atTheEnd});
    startThread(m_shared, *found);
    return job;
}

/// Call with the mutex held.
void ThreadLanes::startThread(const std::shared_ptr<Shared>& shared, const std::shared_ptr<Lane>& lane)
{
    const bool held = shared->threadsSetAside >= shared->bounds.mostSetAside &&
                      std::ranges::any_of(shared->active, [&](const std::shared_ptr<Lane>& other) {
                          return other->setAside && other->name == lane->name;
                      });
    if (lane->hasThread || lane->waiting.empty() || held) {
        return;
    }
    try {
        std::thread([shared, lane] { ThreadLanes::work(shared, lane); }).detach();
        lane->hasThread = true;
        ++shared->threads;
    } catch (const std::system_error&) {
        // The system has no more threads for now: watch() tries again.
    }
}

void ThreadLanes::work(const std::shared_ptr<Shared>& shared, const std::shared_ptr<Lane>& lane)
{
    std::unique_lock lock(shared->mutex);
    while (!lane->waiting.empty() && !lane->setAside) {
        Piece piece = std::move(lane->waiting.front());
        lane->waiting.pop_front();
        const bool runs = !piece.job->stopRequested();
        if (runs) {
            piece.job->alive();
            piece.job->m_state = LaneJob::State::Running;
            lane->current = piece.job;
            lane->keepsOrder = piece.atTheEnd == AtTheEnd::Run;
        }
        lock.unlock();
        Report report = runs ? piece.work(*piece.job) : Report();
        // What it captured can be long lists: freed here, and without the mutex, it holds up nobody.
        piece.work = nullptr;
        lock.lock();
        lane->current.reset();
        piece.job->m_state = LaneJob::State::Finished;
        if (shared->lanes != nullptr) {
            noteFinished(shared, *lane, std::move(report));
        }
    }
    lane->hasThread = false;
    --shared->threads;
    std::erase(shared->active, lane);
    if (lane->setAside) {
        --shared->threadsSetAside;
        for (const std::shared_ptr<Lane>& other : shared->active) {
            startThread(shared, other);
        }
    }
    shared->threadEnded.notify_all();
}

/// A message of running work. Lost when the lanes are gone.
void ThreadLanes::deliver(const std::weak_ptr<Shared>& weak, const QString& lane, Report message)
{
    const std::shared_ptr<Shared> shared = weak.lock();
    if (!shared) {
        return;
    }
    const std::lock_guard lock(shared->mutex);
    if (shared->lanes != nullptr) {
        shared->finished.push_back({.lane = lane, .report = std::move(message)});
        callMainThread(shared);
    }
}

/// Call with the mutex held, while the lanes are there.
void ThreadLanes::noteFinished(const std::shared_ptr<Shared>& shared, const Lane& lane, Report report)
{
    shared->finished.push_back({.lane = lane.name, .report = std::move(report)});
    if (lane.setAside) {
        const auto isBack = [lanes = shared->lanes, name = mountPointOf(lane.name)] {
            if (lanes->m_isBack) {
                lanes->m_isBack(name);
            }
        };
        shared->finished.push_back({.lane = lane.name, .report = isBack});
    }
    callMainThread(shared);
}

/// Call with the mutex held, while the lanes are there.
void ThreadLanes::callMainThread(const std::shared_ptr<Shared>& shared)
{
    if (std::exchange(shared->mainThreadCalled, true)) {
        return;
    }
    shared->lanes->m_mainQueue.async([shared] {
        if (shared->lanes != nullptr) {
            shared->lanes->reportFinished();
        }
    });
}

/// The oldest report, of the named lane only if one is given; empty if there is none.
ThreadLanes::Report ThreadLanes::nextReport(const QString* lane)
{
    const std::lock_guard lock(m_shared->mutex);
    auto& finished = m_shared->finished;
    const auto found =
        std::ranges::find_if(finished, [&](const Finished& next) { return lane == nullptr || next.lane == *lane; });
    if (found == finished.end()) {
        return {};
    }
    Report report = found->report ? std::move(found->report) : [] {};
    finished.erase(found);
    return report;
}

void ThreadLanes::reportFinished()
{
    QElapsedTimer turn;
    turn.start();
    while (turn.elapsed() < longestTurn) {
        const Report report = nextReport();
        if (!report) {
            break;
        }
        report();
    }
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->mainThreadCalled = false;
        if (!m_shared->finished.empty()) {
            callMainThread(m_shared);
        }
    }
    restIfIdle();
}

void ThreadLanes::restIfIdle()
{
    const std::lock_guard lock(m_shared->mutex);
    if (m_shared->active.empty()) {
        m_watch.reset();
    }
}

void ThreadLanes::watch()
{
    QStringList hanging;
    {
        const std::lock_guard lock(m_shared->mutex);
        const std::vector<std::shared_ptr<Lane>> active = m_shared->active; // setAside() adds to it
        for (const std::shared_ptr<Lane>& lane : active) {
            startThread(m_shared, lane);
            if (!lane->setAside && !lane->keepsOrder && lane->current &&
                lane->current->silentFor(m_shared->bounds.hangsAfter)) {
                setAside(lane);
                hanging << mountPointOf(lane->name);
            }
        }
    }
    for (const QString& lane : std::as_const(hanging)) {
        if (m_hangs) {
            m_hangs(lane);
        }
    }
    restIfIdle();
}

/// Call with the mutex held.
void ThreadLanes::setAside(const std::shared_ptr<Lane>& lane)
{
    lane->setAside = true;
    lane->current->m_state = LaneJob::State::Hanging;
    ++m_shared->threadsSetAside;
    auto next = std::make_shared<Lane>(
        Lane{.name = lane->name, .onlyLooks = lane->onlyLooks, .waiting = {}, .current = nullptr});
    next->waiting.swap(lane->waiting);
    if (!next->waiting.empty()) {
        m_shared->active.push_back(next);
        startThread(m_shared, next);
    }
}

} // namespace lapsa
