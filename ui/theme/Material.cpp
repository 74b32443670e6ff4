// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Material.h"

#include "LapsaStyle.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QLinearGradient>
#include <QPainter>

namespace lapsa::material {

namespace {

/// How much lighter than the window colour the upper end is; less in the dark theme.
constexpr double topLightLight = 0.35;
constexpr double topLightDark = 0.025;
constexpr double hoverTint = 0.06;

} // namespace

bool translucencyAvailable()
{
    const auto* const style = qobject_cast<const LapsaStyle*>(QApplication::style());
    return style != nullptr && style->translucencyAvailable();
}

void setTranslucencyAvailable(bool available)
{
    if (auto* const style = qobject_cast<LapsaStyle*>(QApplication::style())) {
        style->setTranslucencyAvailable(available);
    }
}

void paintWindow(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette)
{
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, windowColorAt(0, palette));
    gradient.setColorAt(1, windowColorAt(1, palette));
    paintShape(painter, rect, radius, gradient);
    paintBorder(painter, rect, radius, QPen(themeColor(ColorRole::Separator, palette), 1));
}

QColor windowColorAt(double height, const QPalette& palette)
{
    const double light = schemeOf(palette) == ColorScheme::Dark ? topLightDark : topLightLight;
    return mixed(themeColor(ColorRole::Window, palette), Qt::white, light * (1 - height));
}

void paintSurface(QPainter& painter, const QRectF& rect, double radius, const QPalette& palette, double strength)
{
    const QColor surface = themeColor(ColorRole::Surface, palette);
    const QColor tint = withOpacity(themeColor(ColorRole::Primary, palette), hoverTint * strength);
    paintShape(painter, rect, radius, blended(tint, surface));
    paintBorder(painter, rect, radius, QPen(themeColor(ColorRole::Separator, palette), 1));
}

void paintShape(QPainter& painter, const QRectF& rect, double radius, const QBrush& brush)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

void paintBorder(QPainter& painter, const QRectF& rect, double radius, const QPen& pen)
{
    const double half = pen.widthF() / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
    painter.restore();
}

} // namespace lapsa::material
