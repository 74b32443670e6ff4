// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Lanes.h"

#include <functional>
#include <memory>

namespace lapsa::test {

class ManualTime;

/// The lanes of a program under test: at once and in its only thread, the same calls each time; or with threads, as in
/// the real program.
class EngineLanes final
{
public:
    enum class Threads
    {
        No,
        Yes,
    };

    /// `time` is the main queue of the program and must outlive this object.
    EngineLanes(ManualTime& time, Threads threads);
    EngineLanes(const EngineLanes&) = delete;
    EngineLanes& operator=(const EngineLanes&) = delete;
    ~EngineLanes();

    [[nodiscard]] Lanes& lanes() const { return *m_lanes; }

    /// Runs what the lanes report, and what is due on the main queue, until no work is under way; calls `afterTask`
    /// after each report. False, and at once, if somebody asked for the end with SIGUSR1.
    [[nodiscard]] bool settle(const std::function<void()>& afterTask);

private:
    class Queue;

    ManualTime& m_time;
    /// Nullptr without threads.
    std::unique_ptr<Queue> m_queue;
    std::unique_ptr<Lanes> m_lanes;
};

} // namespace lapsa::test
