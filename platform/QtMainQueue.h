// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "MainQueue.h"

#include <QObject>

namespace lapsa {

/// The main thread's Qt event loop. What waits when this object goes is dropped.
class QtMainQueue final : public MainQueue
{
public:
    void async(std::function<void()> task) override;
    /// Never early, whatever the delay.
    [[nodiscard]] std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay,
                                                            std::function<void()> task) override;
    /// Long intervals are kept to the second only, so that the process wakes up together with others.
    [[nodiscard]] std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds interval,
                                                             std::function<void()> task) override;

private:
    QObject m_context;
};

} // namespace lapsa
