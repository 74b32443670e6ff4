// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QWindow;

namespace lapsa {

/// What the desktop's window system does for windows and the toolkit does not know.
class WindowSystem
{
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    /// Whether windows can be translucent now. It may change at any time: ask again before a window is shown.
    [[nodiscard]] virtual bool compositingAvailable() const = 0;

    /// Keeps a window that is not shown yet out of taskbars and pagers, until it is hidden: call it again before each
    /// show. Does nothing where windows have no such state.
    virtual void keepOutOfTaskbars(const QWindow& window) = 0;
};

} // namespace lapsa
