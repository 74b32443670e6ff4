// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMargins>
#include <QRectF>

class QPainter;

namespace lapsa {

/// The soft shadow of a window, as if light came from above: darkest along the lower edge, and falling off with the
/// square of the distance. It needs a compositing manager.
struct DropShadow
{
    /// How far it reaches, and how much lower than the window it lies, in pixels.
    int extent = 24;
    int drop = 6;
    /// Of black, along the lower edge. Little enough that the hairline of a light window is no pale seam before it.
    double opacity = 0.14;

    /// The room that it takes around its window.
    [[nodiscard]] constexpr QMargins margins() const { return {extent, extent - drop, extent, extent + drop}; }

    /// Under `window` too, whose corners are round by `radius`: they are smooth only on what they lie upon.
    void paint(QPainter& painter, const QRectF& window, double radius) const;
};

} // namespace lapsa
