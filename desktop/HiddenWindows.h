// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Discards the backing stores of the program's hidden windows; a window that is shown again repaints completely.
void forgetPicturesOfHiddenWindows();

} // namespace lapsa
