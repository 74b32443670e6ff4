// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Segments.h"

#include "Material.h"
#include "ThemePalette.h"

#include <QPainter>

namespace lapsa::segments {

namespace {

constexpr double trackLight = 0.06;
constexpr double trackDark = 0.08;
constexpr double chosenDark = 0.16;
constexpr double hoverOpacity = 0.05;
constexpr double disabledOpacity = 0.45;
constexpr int pieceRadius = trackRadius - inset;
/// The soft edge under the raised piece.
constexpr double shadowOpacity = 0.07;

} // namespace

void paintTrack(QPainter& painter, const QRectF& rect, const QPalette& palette)
{
    const double opacity = schemeOf(palette) == ColorScheme::Dark ? trackDark : trackLight;
    material::paintShape(painter, rect, trackRadius, withOpacity(themeColor(ColorRole::Primary, palette), opacity));
}

void paintSegment(QPainter& painter, const QRectF& rect, const State& state, const QPalette& palette)
{
    const QColor primary = themeColor(ColorRole::Primary, palette);
    if (!state.chosen) {
        if (state.hovered && state.enabled) {
            material::paintShape(painter, rect, pieceRadius, withOpacity(primary, hoverOpacity));
        }
        return;
    }
    if (schemeOf(palette) == ColorScheme::Dark) {
        material::paintShape(painter, rect, pieceRadius, withOpacity(primary, chosenDark));
        return;
    }
    material::paintShape(painter, rect.adjusted(-1, 0, 1, 2), pieceRadius + 1, withOpacity(Qt::black, shadowOpacity));
    material::paintShape(painter, rect, pieceRadius, themeColor(ColorRole::Surface, palette));
    material::paintBorder(painter, rect, pieceRadius, QPen(themeColor(ColorRole::Separator, palette), 1));
}

QColor textColor(const State& state, const QPalette& palette)
{
    const QColor color = themeColor(state.chosen ? ColorRole::Primary : ColorRole::Secondary, palette);
    return state.enabled ? color : withOpacity(color, disabledOpacity);
}

} // namespace lapsa::segments
