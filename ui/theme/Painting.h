// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Symbols.h"

#include <QRectF>

class QPainter;
class QWidget;

/// Small steps that several paint events share.
namespace lapsa::painting {

/// Draws a symbol centred in `rect`, on whole device pixels.
void drawSymbol(QPainter& painter, const QRectF& rect, const SymbolLook& look);

/// `color` as it is on a widget: fainter where that is disabled.
[[nodiscard]] QColor enabledColor(const QWidget& widget, const QColor& color);

} // namespace lapsa::painting
