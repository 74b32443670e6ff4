// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Painting.h"

#include "ThemePalette.h"

#include <QPaintDevice>
#include <QPainter>
#include <QWidget>

#include <cmath>

namespace lapsa::painting {

namespace {

constexpr double disabledOpacity = 0.4;

} // namespace

void drawSymbol(QPainter& painter, const QRectF& rect, const SymbolLook& look)
{
    const double ratio = painter.device()->devicePixelRatioF();
    const QPixmap pixmap = symbolPixmap(look, ratio);
    const QSizeF size = pixmap.deviceIndependentSize();
    const auto onPixel = [ratio](double value) { return std::round(value * ratio) / ratio; };
    const QPointF corner(onPixel(rect.center().x() - size.width() / 2), onPixel(rect.center().y() - size.height() / 2));
    painter.drawPixmap(corner, pixmap);
}

QColor enabledColor(const QWidget& widget, const QColor& color)
{
    return widget.isEnabled() ? color : withOpacity(color, disabledOpacity);
}

} // namespace lapsa::painting
