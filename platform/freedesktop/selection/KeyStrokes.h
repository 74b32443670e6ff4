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
    /// Another window has the keyboard: nothing was sent.
    FocusElsewhere,
    /// The server cannot play keys, or the keyboard has no such key.
    Impossible,
};

/// Presses Control+C, once and for the client of `window` only: while it is done, the server is held, so that the focus
/// cannot go elsewhere in between. Keys that the user still holds from a shortcut are let go before.
[[nodiscard]] KeysOutcome pressCopy(X11Connection& connection, xcb_window_t window, const QDeadlineTimer& deadline);

} // namespace lapsa
