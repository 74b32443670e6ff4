// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WindowFrame.h"

#include <QWidget>

namespace lapsa {

namespace {

/// A title bar, and the edges for resizing the window.
constexpr QMargins usualFrame(6, 32, 6, 6);

} // namespace

QRect frameOf(const QWidget& window)
{
    const QRect frame = window.frameGeometry();
    return frame == window.geometry() ? QRect(window.pos(), window.size().grownBy(usualFrame)) : frame;
}

QRect centredFrame(const QWidget& window, const QRect& workArea)
{
    QRect frame = frameOf(window);
    frame.moveCenter(workArea.center());
    return frame;
}

} // namespace lapsa
