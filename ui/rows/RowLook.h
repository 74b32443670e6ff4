// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QLinearGradient>
#include <QPalette>
#include <QRectF>

class QPainter;

/// The ground and the measures of every row with a file, in logical pixels.
namespace lapsa::rowLook {

inline constexpr int padding = 12;
/// Between icon, texts and buttons.
inline constexpr int spacing = 10;
inline constexpr int lineSpacing = 3;
inline constexpr int buttonSpacing = 6;
inline constexpr int buttonExtent = 30;
inline constexpr int cornerRadius = 16;
inline constexpr int iconExtent = 24;
/// Of a row whose disk does not answer.
inline constexpr double waitingOpacity = 0.6;

/// Whether the texts are so large that they need the whole width: the buttons are below them then.
[[nodiscard]] bool stacked();
/// The height of a row with two lines of text at the current text size.
[[nodiscard]] int height();

/// The colour under a row's gradient. In the dark scheme it is the window's, because the gradient alone makes the row
/// as light as a surface; a lighter one would reduce the contrast of red symbols too much.
[[nodiscard]] QColor baseFor(const QPalette& palette);
[[nodiscard]] QLinearGradient groundFor(const QRectF& rect, const QPalette& palette);
/// The colour over a lit row's ground, and the line around it. `strength` is 0 to 1.
[[nodiscard]] QColor lightFor(const QPalette& palette, double strength);
[[nodiscard]] QColor borderFor(const QPalette& palette, double strength);

/// Paints the ground of a row that is lit that much, 0 to 1.
void paintGround(QPainter& painter, const QRectF& rect, const QPalette& palette, double light);

/// Over the ground of a row that is selected.
void paintSelection(QPainter& painter, const QRectF& rect, const QPalette& palette);

} // namespace lapsa::rowLook
