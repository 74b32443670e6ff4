// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

class QWidget;

namespace lapsa {

/// Where a window is, or where it will come up, with all that the window manager puts around it. Before it was shown,
/// nobody knows how much that is: then it is as much as usual.
[[nodiscard]] QRect frameOf(const QWidget& window);

/// The same, in the middle of `workArea`.
[[nodiscard]] QRect centredFrame(const QWidget& window, const QRect& workArea);

} // namespace lapsa
