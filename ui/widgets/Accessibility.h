// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Teaches the toolkit what a screen reader is told about the widgets drawn here: sheets, default buttons,
/// announcements. A window is a frame, a widget with an accessible name is a group of that name, and every other
/// container is passed over. Calling it again does nothing.
void installAccessibility();

} // namespace lapsa
