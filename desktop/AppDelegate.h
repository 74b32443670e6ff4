// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ProgramEnvironment.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>
#include <QUrl>

#include <chrono>
#include <memory>
#include <optional>

namespace lapsa {

class CleanupService;
class FileWriter;
class HotKeyManager;
class LapsaStore;
class NotificationService;
class PanelController;
class ScheduledTask;
class SettingsStore;
class StatusButton;
class StatusItem;

/// The shell of the program: makes every long-lived object, in a fixed order, passes on what comes from outside, and
/// saves everything at the end. After the launch every part is there; asking for one before is a programming error.
class AppDelegate final : public QObject
{
    Q_OBJECT

public:
    using Environment = ProgramEnvironment;

    explicit AppDelegate(const Environment& environment);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();

    /// Files opened with the application, with the file-type rules applied. The panel is not shown.
    void applicationOpen(const QList<QUrl>& urls);

    /// A left click on the status button at `icon`: opens the panel there, or closes it.
    void togglePanel(const std::optional<QRect>& icon);
    /// Opens the panel at the status button; it never closes it.
    void openPanel();
    void openPreferences();
    /// Puts what is selected in the file manager on countdown, with the file-type rules applied, and opens the panel.
    void addFinderSelectionFromShortcut();
    void addFinderSelectionMenu();
    /// Shows the data folder in the file manager.
    void openDataFolder();
    /// What the entry of the menu does that has this name in the desktop entry; any other name does nothing.
    void performAction(const QString& name);

    /// Without a status item or a button it does nothing.
    void clearStatusButtonHighlight();

    /// Writes all that waits to be written, within a second. The program goes on.
    void saveEverything();

    /// Stops the passes, gives the hot key back and saves everything; the second time nothing.
    void applicationWillTerminate();

    /// Ends the program, also before its event loop runs.
    void quit();

    [[nodiscard]] bool quitting() const { return m_quitting; }

private:
    void setUpStatusItem();
    [[nodiscard]] StatusButton* statusButton() const; // null where the desktop has none
    void notificationClicked(const QHash<QString, QString>& userInfo);
    /// What a window that closes now has freed; the last wish counts.
    void giveBackMemoryAfter(std::chrono::milliseconds delay);

    Environment m_environment;
    bool m_terminated = false;
    bool m_quitting = false;
    std::unique_ptr<FileWriter> m_fileWriter;
    std::unique_ptr<SettingsStore> m_settingsStore;
    std::unique_ptr<LapsaStore> m_store;
    std::unique_ptr<NotificationService> m_notificationService;
    std::unique_ptr<CleanupService> m_cleanupService;
    std::unique_ptr<PanelController> m_panelController;
    std::unique_ptr<HotKeyManager> m_hotKeyManager;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<ScheduledTask> m_tidying;
};

} // namespace lapsa
