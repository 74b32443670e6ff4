// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Registers what a screen reader is told about the widgets drawn here: sheets, default buttons, announcements. A
/// window is a frame, a widget with an accessible name is a group with that name, and all other containers are
/// skipped. Further calls do nothing.
void installAccessibility();

} // namespace lapsa
