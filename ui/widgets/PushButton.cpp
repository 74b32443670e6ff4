// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PushButton.h"

#include "FocusRing.h"
#include "Material.h"
#include "Painting.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

namespace lapsa {

namespace {

constexpr TextStyle buttonText{13, QFont::Medium};
constexpr int leastHeight = 30;
constexpr int verticalPadding = 6;
constexpr int horizontalPadding = 14;
constexpr int symbolGap = 6;
constexpr double symbolSize = 12;
constexpr double pressedStrength = 2;
/// How far the accent ground moves, under the pointer and while pressed: towards black under white text, else towards
/// white.
constexpr double accentHover = 0.10;
constexpr double accentPressed = 0.20;

} // namespace

PushButton::PushButton(const QString& text, Kind kind, QWidget* parent)
    : HoverButton(parent)
    , m_kind(kind)
{
    setText(text);
    setFont(fontFor(buttonText));
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    setFocusRadius(*this, material::controlRadius);
}

void PushButton::setSymbol(const QString& symbol)
{
    m_symbol = symbol;
    updateGeometry();
    update();
}

QSize PushButton::sizeHint() const
{
    const QFontMetrics metrics(font());
    const int symbolWidth = m_symbol.isEmpty() ? 0 : symbolExtent(symbolSize * textScale()) + symbolGap;
    return {metrics.horizontalAdvance(text()) + symbolWidth + 2 * horizontalPadding,
            std::max(leastHeight, metrics.height() + 2 * verticalPadding)};
}

void PushButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintGround(painter);

    const QColor color = painting::enabledColor(*this, foreground());
    const int content = sizeHint().width() - 2 * horizontalPadding;
    QRect place = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, QSize(content, height()), rect());
    if (!m_symbol.isEmpty()) {
        const int extent = symbolExtent(symbolSize * textScale());
        const Qt::Alignment leading = Qt::AlignLeading | Qt::AlignVCenter;
        const QRect symbol = QStyle::alignedRect(layoutDirection(), leading, QSize(extent, extent), place);
        painting::drawSymbol(painter, symbol, {m_symbol, symbolSize * textScale(), SymbolWeight::Semibold, color});
        const int taken = extent + symbolGap;
        place.adjust(isRightToLeft() ? 0 : taken, 0, isRightToLeft() ? -taken : 0, 0);
    }
    painter.setFont(font());
    painter.setPen(color);
    painter.drawText(place, Qt::AlignCenter | Qt::TextSingleLine, text());
}

bool PushButton::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setFont(fontFor(buttonText));
        updateGeometry();
    }
    return HoverButton::event(event);
}

QColor PushButton::foreground() const
{
    switch (m_kind) {
    case Kind::Default:
        return themeColor(ColorRole::OnAccent, palette());
    case Kind::Plain:
        return themeColor(ColorRole::Primary, palette());
    case Kind::Destructive:
        return themeColor(ColorRole::Danger, palette());
    }
    return {};
}

void PushButton::paintGround(QPainter& painter) const
{
    if (m_kind != Kind::Default) {
        material::paintSurface(painter, rect(), material::controlRadius, palette(),
                               isDown() ? pressedStrength : hoverProgress());
        return;
    }
    const QColor accent = themeColor(ColorRole::Accent, palette());
    const double depth = isDown() ? accentPressed : accentHover * hoverProgress();
    const QColor ground =
        mixed(accent, themeColor(ColorRole::OnAccent, palette()) == Qt::white ? Qt::black : Qt::white, depth);
    material::paintShape(painter, rect(), material::controlRadius, painting::enabledColor(*this, ground));
}

} // namespace lapsa
