// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>

namespace lapsa {

/// Calls `then` once the toolkit's record of the X server's time is newer than this call, if `context` still exists.
///
/// The toolkit takes the clipboard with the time of the last event it has seen, and the server refuses a time older
/// than the current owner's: without this, a copy made after another program's copy fails silently. On X11, `then` is
/// called from the event loop after one round trip to the server; elsewhere it is called at once.
void whenServerTimestampIsFresh(QObject* context, std::function<void()> then);

} // namespace lapsa
