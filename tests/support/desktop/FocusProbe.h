// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa::test {

/// Waits until the window manager of the display manages windows and gives them the focus; ends the test run when it
/// never does.
void awaitWindowManager();

} // namespace lapsa::test
