// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QMargins>
#include <QRectF>

class QPainter;

namespace lapsa {

/// The soft shadow of a window lit from above: darkest along the lower edge, and fading with the square of the
/// distance. Needs a compositing manager.
struct DropShadow
{
    /// Its reach, and its offset below the window, in logical pixels.
    int extent = 24;
    int drop = 6;
    /// The opacity of black along the lower edge: low enough that a light window's hairline does not look like a pale
    /// seam.
    double opacity = 0.14;

    /// The room that it needs around its window.
    [[nodiscard]] constexpr QMargins margins() const { return {extent, extent - drop, extent, extent + drop}; }

    /// Paints under `window` too, whose corners have this `radius`: they look smooth only on an opaque ground.
    void paint(QPainter& painter, const QRectF& window, double radius) const;
};

} // namespace lapsa
