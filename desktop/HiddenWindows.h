// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Lets the program's hidden windows forget the picture of what they last showed; a window that shows again paints
/// itself whole.
void forgetPicturesOfHiddenWindows();

} // namespace lapsa
