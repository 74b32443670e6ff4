// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Symbols.h"

#include <QRectF>

class QPainter;
class QWidget;

/// Helpers shared by several paint events.
namespace lapsa::painting {

/// Draws a symbol centred in `rect`, on whole device pixels.
void drawSymbol(QPainter& painter, const QRectF& rect, const SymbolLook& look);

/// `color`, fainter if the widget is disabled.
[[nodiscard]] QColor enabledColor(const QWidget& widget, const QColor& color);

} // namespace lapsa::painting
