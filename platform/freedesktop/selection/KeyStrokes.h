// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>

#include <xcb/xcb.h>

namespace lapsa {

class X11Connection;

enum class KeysOutcome
{
    Sent,
    /// Another window has the focus, or the server did not answer in time: nothing was sent.
    FocusElsewhere,
    /// The server cannot simulate keys, or the keyboard has no such key.
    Impossible,
};

/// Presses Control+C once, and only for the client of `window`: the server is grabbed meanwhile, so that the focus
/// cannot move. Keys that the user still holds from a shortcut are released first.
[[nodiscard]] KeysOutcome pressCopy(X11Connection& connection, xcb_window_t window, const QDeadlineTimer& deadline);

} // namespace lapsa
