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

/// A window of a file manager that the user works with.
struct FileManagerWindow
{
    /// How it is asked to copy what is selected.
    enum class Way
    {
        Keys,
        DolphinAction
    };

    xcb_window_t window = XCB_WINDOW_NONE;
    Way way = Way::Keys;
    /// Zero when it does not say.
    std::uint32_t processId = 0;
};

/// The way to ask the file manager whose windows are of that class; nothing for every other program. In any case.
[[nodiscard]] std::optional<FileManagerWindow::Way> wayOfClass(QByteArrayView windowClass);

/// The active window, if it is a file manager's. Waits while no window is active, or only a taskbar or a window of the
/// client with the resource `ours`, as right after a menu has closed.
[[nodiscard]] std::optional<FileManagerWindow> activeFileManager(X11Connection& connection, std::uint32_t ours,
                                                                 const QDeadlineTimer& deadline);

} // namespace lapsa
