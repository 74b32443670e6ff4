// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QRect>

class QWidget;

namespace lapsa {

/// Where a window is, or where it will appear, including its frame. Before it was first shown the frame's size is
/// unknown; a usual size is assumed.
[[nodiscard]] QRect frameOf(const QWidget& window);

/// The same, centred in `workArea`.
[[nodiscard]] QRect centredFrame(const QWidget& window, const QRect& workArea);

} // namespace lapsa
