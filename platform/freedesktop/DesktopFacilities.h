// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <memory>

namespace lapsa {

class FileManagerSelection;
class FolderPicker;
class HotKeys;
class PointerMonitor;
class StatusBar;
class WindowSystem;
struct ProgramIdentity;

// The facilities that differ from desktop to desktop. Only these functions ask which desktop this is; if it lacks a
// facility, they return one that does nothing. Call each once, after creating the application object. They never return
// null.

[[nodiscard]] std::unique_ptr<StatusBar> makeStatusBar(const ProgramIdentity& identity);
[[nodiscard]] std::unique_ptr<HotKeys> makeHotKeys();
[[nodiscard]] std::unique_ptr<FileManagerSelection> makeFileManagerSelection();
[[nodiscard]] std::unique_ptr<FolderPicker> makeFolderPicker();
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem();
[[nodiscard]] std::unique_ptr<PointerMonitor> makePointerMonitor();

} // namespace lapsa
