// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QDeadlineTimer>

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>

namespace lapsa {

class X11Connection;

/// The file manager window that the user is working in.
struct FileManagerWindow
{
    /// How to make it copy its selection.
    enum class Way
    {
        Keys,
        DolphinAction
    };

    xcb_window_t window = XCB_WINDOW_NONE;
    Way way = Way::Keys;
    /// 0 if unknown.
    std::uint32_t processId = 0;
};

/// How to ask the file manager with this window class (not case-sensitive); nothing for other programs.
[[nodiscard]] std::optional<FileManagerWindow::Way> wayOfClass(QByteArrayView windowClass);

/// The active window, if it belongs to a file manager. Waits while no window is active, or only a taskbar or a window
/// of the client with the resource `ours`, for example right after a menu has closed.
[[nodiscard]] std::optional<FileManagerWindow> activeFileManager(X11Connection& connection, std::uint32_t ours,
                                                                 const QDeadlineTimer& deadline);

} // namespace lapsa
