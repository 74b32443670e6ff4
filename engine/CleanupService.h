// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"

#include <QList>
#include <QObject>
#include <QPointer>

#include <cstdint>
#include <memory>

namespace lapsa {

class Clock;
class ExpiryWarnings;
class LapsaStore;
class MainQueue;
class ScheduledTask;

/// Runs the cleanup: one pass at start and one every 60 seconds.
class CleanupService final : public QObject
{
    Q_OBJECT

public:
    struct Environment
    {
        const Clock& clock;
        MainQueue& mainQueue;
    };

    /// Holds the store weakly: once it is gone, a pass does nothing. Does not start the timer.
    CleanupService(LapsaStore& store, ExpiryWarnings& notificationService, const Environment& environment);
    ~CleanupService() override;

    /// Restarts the timer and runs the first pass at once.
    void start();
    /// Does nothing if no timer is running.
    void stop();

    /// One pass: scans the watched folders, warns, and disposes of what is due.
    void tick();

private:
    void sendDueWarnings(LapsaStore& store);
    void warn(const QList<LapsaItem>& items, std::int64_t leadMinutes);

    QPointer<LapsaStore> m_store;
    ExpiryWarnings& m_notificationService;
    Environment m_environment;
    std::unique_ptr<ScheduledTask> m_timer;
};

} // namespace lapsa
