// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Teaches the toolkit what a screen reader is told about the views drawn here: the list and its rows, sheets, default
/// buttons. A window is a frame, a widget with an accessible name is a group of that name, and every other container is
/// passed over. Once a process is enough, more do no harm.
void installAccessibility();

} // namespace lapsa
