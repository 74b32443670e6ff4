// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "StatusButton.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

namespace lapsa {

class Appearance;
class CleanupService;
class Clock;
class LapsaStore;
class MainQueue;
class NotificationCentre;
class NotificationService;
class PanelController;
class Pasteboard;
class SettingsStore;
class Workspace;

/// The shell of the program: makes every long-lived object, in a fixed order, passes on what comes from outside, and
/// saves everything at the end. After the launch every part is there; asking for one before is a programming error.
class AppDelegate final : public QObject
{
    Q_OBJECT

public:
    /// What the program stands on. All of it outlives the delegate.
    struct Environment
    {
        const Clock& clock;
        MainQueue& mainQueue;
        Appearance& appearance;
        Workspace& workspace;
        Pasteboard& pasteboard;
        NotificationCentre& notificationCentre;
    };

    explicit AppDelegate(const Environment& environment);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();

    /// Files opened with the application, with the file-type rules applied. The panel is not shown.
    void applicationOpen(const QList<QUrl>& urls);

    /// Opens the panel at the status button; it never closes it.
    void openPanel();

    /// Writes all that waits for its time to be written. The program goes on.
    void saveEverything();

    /// Stops the passes and saves everything; the second time, and before the launch, nothing.
    void applicationWillTerminate();

    /// Ends the program.
    void quit();

private:
    void notificationClicked(const QHash<QString, QString>& userInfo);
    void clearStatusButtonHighlight();

    Environment m_environment;
    bool m_terminated = false;
    std::unique_ptr<SettingsStore> m_settingsStore;
    std::unique_ptr<LapsaStore> m_store;
    std::unique_ptr<NotificationService> m_notificationService;
    std::unique_ptr<CleanupService> m_cleanupService;
    CornerStatusButton m_statusButton;
    std::unique_ptr<PanelController> m_panelController;
};

} // namespace lapsa
