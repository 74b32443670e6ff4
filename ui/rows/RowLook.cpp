// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RowLook.h"

#include "Material.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPen>

#include <algorithm>

namespace lapsa::rowLook {

namespace {

constexpr double groundWhite = 0.1;
constexpr double groundAccent = 0.035;
/// Faint enough that text in every role keeps its contrast.
constexpr double lightAccent = 0.1;
constexpr double selectedAccent = 0.12;
/// From this text scale on, the buttons are below the text.
constexpr double stackedScale = 1.3;

int textHeight()
{
    return QFontMetrics(fontFor(headlineText)).height() + lineSpacing + QFontMetrics(fontFor(calloutText)).height();
}

} // namespace

bool stacked()
{
    return textScale() > stackedScale;
}

int height()
{
    if (stacked()) {
        return 2 * padding + std::max(iconExtent, textHeight()) + spacing + buttonExtent;
    }
    return 2 * padding + std::max({iconExtent, textHeight(), buttonExtent});
}

QColor baseFor(const QPalette& palette)
{
    return themeColor(schemeOf(palette) == ColorScheme::Dark ? ColorRole::Window : ColorRole::Surface, palette);
}

QLinearGradient groundFor(const QRectF& rect, const QPalette& palette)
{
    // Lit from above. The gradient starts above the row, so that text and symbols keep their contrast in its upper
    // part.
    QLinearGradient gradient(rect.topLeft() - QPointF(0, rect.height()), rect.bottomLeft());
    gradient.setColorAt(0, withOpacity(Qt::white, groundWhite));
    gradient.setColorAt(1, withOpacity(themeColor(ColorRole::Accent, palette), groundAccent));
    return gradient;
}

QColor lightFor(const QPalette& palette, double strength)
{
    return withOpacity(themeColor(ColorRole::Accent, palette), lightAccent * strength);
}

QColor borderFor(const QPalette& palette, double strength)
{
    return mixed(themeColor(ColorRole::Separator, palette), themeColor(ColorRole::Accent, palette), strength);
}

void paintGround(QPainter& painter, const QRectF& rect, const QPalette& palette, double light)
{
    material::paintShape(painter, rect, cornerRadius, baseFor(palette));
    material::paintShape(painter, rect, cornerRadius, groundFor(rect, palette));
    if (light > 0) {
        material::paintShape(painter, rect, cornerRadius, lightFor(palette, light));
    }
    material::paintBorder(painter, rect, cornerRadius, QPen(borderFor(palette, light), 1));
}

void paintSelection(QPainter& painter, const QRectF& rect, const QPalette& palette)
{
    const QColor accent = themeColor(ColorRole::Accent, palette);
    material::paintShape(painter, rect, cornerRadius, withOpacity(accent, selectedAccent));
    material::paintBorder(painter, rect, cornerRadius, QPen(accent, 1));
}

} // namespace lapsa::rowLook
