// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Teaches the toolkit what a screen reader is told about the panel's list and its rows, beside installAccessibility().
/// Calling it again does nothing.
void installPanelAccessibility();

} // namespace lapsa
