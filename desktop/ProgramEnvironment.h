// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

class Appearance;
class Clock;
class FileManagerSelection;
class FolderPicker;
class HotKeys;
class Lanes;
class MainQueue;
class NotificationCentre;
class Pasteboard;
class PointerMonitor;
class StatusBar;
class WindowSystem;
class Workspace;

/// What the program depends on. All of it outlives the program's objects.
struct ProgramEnvironment
{
    const Clock& clock;
    MainQueue& mainQueue;
    Lanes& lanes;
    Appearance& appearance;
    Workspace& workspace;
    Pasteboard& pasteboard;
    NotificationCentre& notificationCentre;
    StatusBar& statusBar;
    HotKeys& hotKeys;
    FileManagerSelection& fileManagerSelection;
    FolderPicker& folderPicker;
    WindowSystem& windowSystem;
    PointerMonitor& pointer;
};

} // namespace lapsa
