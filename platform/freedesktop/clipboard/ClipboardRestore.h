// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ClipboardContent.h"

#include <QObject>

#include <xcb/xcb.h>

namespace lapsa {

/// Restores the clipboard's content, with this program as its owner.
class ClipboardRestore final : public QObject
{
public:
    using QObject::QObject;

    /// Takes the clipboard from the client of `window`, or if it has no owner, as soon as the event loop runs. Content
    /// that another program has put there by then stays.
    void begin(const ClipboardContent& content, xcb_window_t window);

    /// Whether a restore is under way: the clipboard does not hold the user's content now.
    [[nodiscard]] bool pending() const { return m_triesLeft > 0; }

private:
    void attemptSoon();
    void attempt();
    /// Whether the content is back, or replaced by another program's.
    [[nodiscard]] bool arrived() const;

    ClipboardContent m_content;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    int m_triesLeft = 0;
    /// Counts the calls of begin(); attempts for earlier calls are ignored.
    int m_beginning = 0;
};

} // namespace lapsa
