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
class ItemKinds;
class LapsaStore;
class NotificationService;
class PanelController;
class ScheduledTask;
class SettingsStore;
class StatusButton;
class StatusItem;

/// The shell of the program: creates every long-lived object in a fixed order, forwards outside events, and saves
/// everything at the end. After the launch every part exists; asking for one earlier is a programming error.
class AppDelegate final : public QObject
{
    Q_OBJECT

public:
    using Environment = ProgramEnvironment;

    explicit AppDelegate(const Environment& environment);
    ~AppDelegate() override;

    void applicationDidFinishLaunching();

    /// Adds files that were opened with the application, with the file type rules applied. Does not show the panel.
    void applicationOpen(const QList<QUrl>& urls);

    /// Handles a left click on the status button at `icon`: opens the panel there, or closes it.
    void togglePanel(const std::optional<QRect>& icon);
    /// Opens the panel at the status button; never closes it.
    void openPanel();
    void openPreferences();
    /// Opens the window with the files in Recovery.
    void openRecovery();
    /// Puts the file manager's selection on countdown, with the file type rules applied, and opens the panel.
    void addFinderSelectionFromShortcut();
    void addFinderSelectionMenu();
    /// Shows the data folder in the file manager.
    void openDataFolder();
    /// Does what the menu entry with this name in the desktop entry does; any other name does nothing.
    void performAction(const QString& name);

    /// Does nothing without a status item or a button.
    void clearStatusButtonHighlight();

    /// Writes everything that is not yet saved, waiting at most a second. The program continues.
    void saveEverything();

    /// Stops the passes, releases the hot key and saves everything. A second call does nothing.
    void applicationWillTerminate();

    /// Ends the program, even before its event loop runs.
    void quit();

    [[nodiscard]] bool quitting() const { return m_quitting; }

    [[nodiscard]] LapsaStore& store() const;

private:
    void makePanelController();
    void setUpStatusItem();
    [[nodiscard]] StatusButton* statusButton() const; // null if the desktop has none
    void notificationClicked(const QHash<QString, QString>& userInfo);
    /// Releases the memory of closed windows after `delay`; a new call replaces a waiting one.
    void giveBackMemoryAfter(std::chrono::milliseconds delay);

    Environment m_environment;
    bool m_terminated = false;
    bool m_quitting = false;
    std::unique_ptr<FileWriter> m_fileWriter;
    std::unique_ptr<SettingsStore> m_settingsStore;
    std::unique_ptr<ItemKinds> m_itemKinds;
    std::unique_ptr<LapsaStore> m_store;
    std::unique_ptr<NotificationService> m_notificationService;
    std::unique_ptr<CleanupService> m_cleanupService;
    std::unique_ptr<PanelController> m_panelController;
    std::unique_ptr<HotKeyManager> m_hotKeyManager;
    std::unique_ptr<StatusItem> m_statusItem;
    std::unique_ptr<ScheduledTask> m_tidying;
};

} // namespace lapsa
