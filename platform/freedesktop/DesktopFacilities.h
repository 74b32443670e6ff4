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

// What differs from desktop to desktop. These functions, and nobody else, ask which one this is; where it lacks a
// facility they give one that does nothing. Call them once, with a running application. None of them is ever null.

[[nodiscard]] std::unique_ptr<StatusBar> makeStatusBar(const ProgramIdentity& identity);
[[nodiscard]] std::unique_ptr<HotKeys> makeHotKeys();
[[nodiscard]] std::unique_ptr<FileManagerSelection> makeFileManagerSelection();
[[nodiscard]] std::unique_ptr<FolderPicker> makeFolderPicker();
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem();
[[nodiscard]] std::unique_ptr<PointerMonitor> makePointerMonitor();

} // namespace lapsa
