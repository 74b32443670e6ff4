// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

class QWindow;

namespace lapsa {

/// Keeps a window that is not on the screen yet out of taskbars and pagers. It holds until the window goes: whoever
/// shows it again asks again. Where windows have no such state, there is nothing to do.
void keepOutOfTaskbars(const QWindow& window);

} // namespace lapsa
