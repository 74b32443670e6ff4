// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SymbolButton.h"

#include "FocusRing.h"
#include "Material.h"
#include "Painting.h"
#include "ThemePalette.h"

#include <QPainter>

namespace lapsa {

namespace {

constexpr int radius = 10;
constexpr double pressedStrength = 2;

} // namespace

SymbolButton::SymbolButton(const Look& look, const QString& help, QWidget* parent)
    : HoverButton(parent)
    , m_look(look)
{
    setFixedSize(sizeHint());
    setHelp(help);
    setFocusRadius(*this, radius);
}

QSize SymbolButton::sizeHint() const
{
    return {m_look.extent, m_look.extent};
}

void SymbolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    material::paintSurface(painter, rect(), radius, palette(), isDown() ? pressedStrength : hoverProgress());
    const QColor color = themeColor(ColorRole::Primary, palette());
    painting::drawSymbol(painter, rect(),
                         {m_look.symbol, m_look.size, m_look.weight, painting::enabledColor(*this, color)});
}

} // namespace lapsa
