// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"
#include "MountPoints.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>

namespace lapsa {

class MainQueue;
class ScheduledTask;

/// Lanes that are threads. A lane has one while it has work, and none at rest. Work that gives no sign of life for two
/// seconds is set aside with its thread, and another thread goes on with the rest of its lane. No more than 32 are set
/// aside at once: then their lanes wait until one comes back.
class ThreadLanes final : public Lanes
{
public:
    struct Bounds
    {
        /// Without a sign of life.
        std::chrono::milliseconds hangsAfter{2000};
        std::size_t mostSetAside = 32;
    };

    /// The queue outlives the lanes.
    explicit ThreadLanes(MainQueue& mainQueue)
        : ThreadLanes(mainQueue, {})
    {}

    ThreadLanes(MainQueue& mainQueue, const Bounds& bounds);
    /// Waits for nothing: what runs and what has to run is left to itself, and its report is lost.
    ~ThreadLanes() override;

    std::shared_ptr<LaneJob> run(const QString& path, Work work) override;
    std::shared_ptr<LaneJob> runOn(const QString& lane, Work work, AtTheEnd atTheEnd) override;
    bool await(const QString& lane, std::chrono::milliseconds patience) override;

    /// The end: what has not begun is dropped, but for what has to run, what runs is asked to end, and what has ended
    /// is reported before this returns. Says whether everything did within `patience`. Nothing may be handed over
    /// after.
    bool finish(std::chrono::milliseconds patience);

    /// Names the lane whenever work on it begins to hang, and whenever what hung has come back.
    void onHanging(std::function<void(const QString& lane)> hangs, std::function<void(const QString& lane)> isBack)
    {
        m_hangs = std::move(hangs);
        m_isBack = std::move(isBack);
    }

private:
    struct Piece;
    struct Finished;
    struct Lane;
    struct Shared;

    static void work(const std::shared_ptr<Shared>& shared, const std::shared_ptr<Lane>& lane);
    static void startThread(const std::shared_ptr<Shared>& shared, const std::shared_ptr<Lane>& lane);
    std::shared_ptr<LaneJob> enqueue(const QString& lane, Work work, AtTheEnd atTheEnd);
    void askToEnd();
    void restIfIdle();
    void watch();
    void setAside(const std::shared_ptr<Lane>& lane);
    static void callMainThread(const std::shared_ptr<Shared>& shared);
    void reportFinished();
    [[nodiscard]] Report nextReport(const QString* lane = nullptr);

    MainQueue& m_mainQueue;
    MountPoints m_mountPoints;
    std::shared_ptr<Shared> m_shared;
    /// While there is work.
    std::unique_ptr<ScheduledTask> m_watch;
    std::function<void(const QString& lane)> m_hangs;
    std::function<void(const QString& lane)> m_isBack;
};

} // namespace lapsa
