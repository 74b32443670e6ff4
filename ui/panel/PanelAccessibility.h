// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Registers what a screen reader is told about the panel's list and its rows, in addition to installAccessibility().
/// Further calls do nothing.
void installPanelAccessibility();

} // namespace lapsa
