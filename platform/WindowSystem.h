// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QWindow;

namespace lapsa {

/// Window system features that the toolkit does not offer.
class WindowSystem
{
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    /// Whether windows can be translucent now. This may change at any time: ask again before showing a window.
    [[nodiscard]] virtual bool compositingAvailable() const = 0;

    /// Keeps a window out of taskbars and pagers until it is hidden: call it before each show. Does nothing on window
    /// systems without such a state.
    virtual void keepOutOfTaskbars(const QWindow& window) = 0;
};

} // namespace lapsa
