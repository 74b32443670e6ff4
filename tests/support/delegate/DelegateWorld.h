// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AppDelegate.h"
#include "ManualLanes.h"
#include "ManualTime.h"
#include "Recorders.h"
#include "RecordingDesktop.h"
#include "TemporaryHome.h"

#include <QApplication>
#include <QJsonArray>
#include <QList>
#include <QString>
#include <QWidget>

#include <algorithm>
#include <memory>

namespace lapsa::test {

/// The whole program in a temporary home, on a desktop that records what it is told.
class DelegateWorld final
{
public:
    DelegateWorld();
    DelegateWorld(const DelegateWorld&) = delete;
    DelegateWorld& operator=(const DelegateWorld&) = delete;
    /// Closes the splash as well.
    ~DelegateWorld();

    /// Makes the delegate and launches it. Files and settings can be prepared before.
    void start();
    /// Makes the delegate without launching it.
    void make();

    /// Runs the entry of the tray menu with that title; ends the process when there is none.
    void choose(const QString& title) const;

    [[nodiscard]] RecordingStatusButton& button() const { return statusBar.item->theButton; }

    [[nodiscard]] const QList<StatusMenuEntry>& menu() const { return statusBar.item->menu; }

    /// Whether a window of that type is visible.
    template <typename T>
    [[nodiscard]] static bool shows()
    {
        return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* window) {
            return window->isVisible() && qobject_cast<const T*>(window) != nullptr;
        });
    }

    /// The items in the state file.
    [[nodiscard]] QJsonArray storedItems() const;
    /// Whether the state file names that path.
    [[nodiscard]] bool lists(const QString& path) const;

    TemporaryHome home;
    ManualTime time;
    ManualLanes lanes{ManualLanes::Runs::AtOnce};
    RecordingAppearance appearance;
    RecordingWorkspace workspace;
    RecordingPasteboard pasteboard;
    RecordingNotificationCentre notificationCentre;
    RecordingStatusBar statusBar;
    RecordingHotKeys hotKeys;
    PlayedSelection selection;
    RecordingFolderPicker folderPicker;
    PlainWindowSystem windowSystem;
    PlayedPointer pointer;
    std::unique_ptr<AppDelegate> delegate;
};

} // namespace lapsa::test
