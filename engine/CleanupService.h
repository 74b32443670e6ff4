// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>

#include <memory>

namespace lapsa {

class Clock;
class ExpiryWarnings;
class LapsaStore;
class MainQueue;
class ScheduledTask;

/// The clock of the system: one cleanup pass at start and one every 60 seconds.
class CleanupService final : public QObject
{
    Q_OBJECT

public:
    struct Environment
    {
        const Clock& clock;
        MainQueue& mainQueue;
    };

    /// Holds the store weakly: a pass does nothing once it is gone. No timer runs yet.
    CleanupService(LapsaStore& store, ExpiryWarnings& notificationService, const Environment& environment);
    ~CleanupService() override;

    /// Starts the timer anew and runs the first pass at once.
    void start();
    /// Does nothing when no timer runs.
    void stop();

    /// One pass: scan the watched folders, warn, dispose of what is due.
    void tick();

private:
    void sendDueWarnings(LapsaStore& store);

    QPointer<LapsaStore> m_store;
    ExpiryWarnings& m_notificationService;
    Environment m_environment;
    std::unique_ptr<ScheduledTask> m_timer;
};

} // namespace lapsa
