// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPalette>
#include <QRectF>

class QPainter;

/// The backgrounds on which everything lies.
namespace lapsa::material {

/// Whether windows may have transparent round corners, which need a compositing window manager. The application's style
/// stores it; without LapsaStyle, windows are opaque and square.
[[nodiscard]] bool translucencyAvailable();
/// Tells the application's style whether the desktop composites windows. Until then windows are opaque and square.
void setTranslucencyAvailable(bool available);

inline constexpr int panelRadius = 12;
inline constexpr int cardRadius = 12;
inline constexpr int controlRadius = 8;

/// The ground of a window: the window colour, a little lighter at the top, with a hairline inside its edge. Opaque;
/// radius 0 for square corners.
void paintWindow(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette);

/// The colour of that ground at a height, 0 at the top to 1 at the bottom.
[[nodiscard]] QColor windowColorAt(double height, const QPalette& palette);

/// A raised piece of the window: a field, a card, a plain button. `strength`, 0 to 1, is the hover progress.
void paintSurface(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette, double strength = 0);

/// A filled shape without an edge.
void paintShape(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush);

/// A line of the pen's width, entirely inside `rect`.
void paintBorder(QPainter& painter, const QRectF& rect, double radius, const QPen& pen);

} // namespace lapsa::material
