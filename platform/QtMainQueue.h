// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "MainQueue.h"

#include <QObject>

namespace lapsa {

/// The main thread's Qt event loop. Tasks still waiting when this object is destroyed are dropped.
class QtMainQueue final : public MainQueue
{
public:
    void async(std::function<void()> task) override;
    /// Never runs early, whatever the delay.
    [[nodiscard]] std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay,
                                                            std::function<void()> task) override;
    /// Long intervals are accurate only to a second, so that the process wakes up together with others.
    [[nodiscard]] std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds interval,
                                                             std::function<void()> task) override;

private:
    QObject m_context;
};

} // namespace lapsa
