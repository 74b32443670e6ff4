// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPalette>
#include <QRectF>

class QPainter;

/// The look of segmented controls: a track, and a raised piece under the chosen segment.
namespace lapsa::segments {

struct State
{
    bool chosen = false;
    bool hovered = false;
    bool enabled = true;
};

/// Between the track's edge and the raised piece.
inline constexpr int inset = 3;
inline constexpr int trackRadius = 9;

void paintTrack(QPainter& painter, const QRectF& rect, const QPalette& palette);
/// The ground of one segment: raised if chosen, tinted if hovered, otherwise none.
void paintSegment(QPainter& painter, const QRectF& rect, const State& state, const QPalette& palette);
[[nodiscard]] QColor textColor(const State& state, const QPalette& palette);

} // namespace lapsa::segments
