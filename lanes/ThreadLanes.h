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

/// Lanes that run on threads. A lane has a thread only while it has work. Work that gives no sign of life for two
/// seconds is set aside with its thread, and another thread continues with the rest of its lane. At most 32 threads are
/// set aside at once; then their lanes wait until one returns.
class ThreadLanes final : public Lanes
{
public:
    struct Bounds
    {
        /// The longest time without a sign of life.
        std::chrono::milliseconds hangsAfter{2000};
        std::size_t mostSetAside = 32;
    };

    /// `mainQueue` must outlive the lanes.
    explicit ThreadLanes(MainQueue& mainQueue)
        : ThreadLanes(mainQueue, {})
    {}

    ThreadLanes(MainQueue& mainQueue, const Bounds& bounds);
    /// Waits for nothing: work that is running or must still run continues on its own, and its report is lost.
    ~ThreadLanes() override;

    std::shared_ptr<LaneJob> run(const QString& path, Work work) override;
    std::shared_ptr<LaneJob> look(const QString& path, Work work) override;
    [[nodiscard]] QString laneOf(const QString& path) override;
    std::shared_ptr<LaneJob> runOn(const QString& lane, Work work, AtTheEnd atTheEnd) override;
    bool await(const QString& lane, std::chrono::milliseconds patience) override;

    bool awaitLooks(std::chrono::milliseconds patience) override;
    bool finish(std::chrono::milliseconds patience) override;

    /// Calls `hangs` with the mount point when work on a lane of it begins to hang, and `isBack` when it has returned.
    void onHanging(std::function<void(const QString& mountPoint)> hangs,
                   std::function<void(const QString& mountPoint)> isBack)
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
    static void deliver(const std::weak_ptr<Shared>& weak, const QString& lane, Report message);
    static void noteFinished(const std::shared_ptr<Shared>& shared, const Lane& lane, Report report);
    static void callMainThread(const std::shared_ptr<Shared>& shared);
    void reportFinished();
    [[nodiscard]] Report nextReport(const QString* lane = nullptr);

    MainQueue& m_mainQueue;
    MountPoints m_mountPoints;
    std::shared_ptr<Shared> m_shared;
    /// Exists while there is work.
    std::unique_ptr<ScheduledTask> m_watch;
    std::function<void(const QString& mountPoint)> m_hangs;
    std::function<void(const QString& mountPoint)> m_isBack;
};

} // namespace lapsa
