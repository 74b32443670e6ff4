// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ClipboardContent.h"

#include <QObject>

#include <xcb/xcb.h>

namespace lapsa {

/// Puts back what was on the clipboard, in the name of this program.
class ClipboardRestore final : public QObject
{
public:
    using QObject::QObject;

    /// Takes the clipboard from the client of `window`, or from nobody, as soon as the event loop runs. What another
    /// program has put there by then stays.
    void begin(const ClipboardContent& content, xcb_window_t window);

    /// Whether it has begun and is not done: what is on the clipboard now is not the user's.
    [[nodiscard]] bool pending() const { return m_triesLeft > 0; }

private:
    void attemptSoon();
    void attempt();
    /// Whether the content is back, or another program's is there.
    [[nodiscard]] bool arrived() const;

    ClipboardContent m_content;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    int m_triesLeft = 0;
    /// Counts the calls of begin(): an attempt for an earlier one is none any more.
    int m_beginning = 0;
};

} // namespace lapsa
