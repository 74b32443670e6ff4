// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <functional>

namespace lapsa {

/// Calls `then` when the toolkit's idea of the X server's time is newer than this call, as long as `context` lives.
///
/// The toolkit takes the clipboard with the time of the last event it has seen, and the server refuses that to whoever
/// comes with an older time than the present owner: without this, a copy made after another program's fails in silence.
/// On X11 it takes one journey to the server and comes from the event loop; elsewhere `then` is called at once.
void whenServerTimestampIsFresh(QObject* context, std::function<void()> then);

} // namespace lapsa
