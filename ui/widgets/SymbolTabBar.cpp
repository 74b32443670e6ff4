// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SymbolTabBar.h"

#include "FocusRing.h"
#include "Painting.h"
#include "Segments.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionTab>

#include <algorithm>

namespace lapsa {

namespace {

constexpr TextStyle tabLabelText{13, QFont::Medium};
constexpr double symbolSize = 14;
constexpr int symbolGap = 8;
constexpr int horizontalPadding = 18;
constexpr int leastPadding = 8;
/// Allows for rounded widths.
constexpr int slack = 2;
constexpr int verticalPadding = 9;
constexpr int leastHeight = 36;
/// The free space on each side of the bar.
constexpr int surroundings = 24;

int symbolEdge()
{
    return symbolExtent(symbolSize * textScale());
}

} // namespace

SymbolTabBar::SymbolTabBar(QWidget* parent)
    : QTabBar(parent)
{
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideRight);
    setAttribute(Qt::WA_Hover);
    setFont(fontFor(tabLabelText));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setFocusRadius(*this, segments::trackRadius);
}

void SymbolTabBar::addTab(const QString& symbol, const QString& text)
{
    const int index = QTabBar::addTab(text);
    setTabData(index, symbol);
}

QSize SymbolTabBar::tabSizeHint(int index) const
{
    const QFontMetrics metrics(font());
    const int width = narrow()
                          ? metrics.horizontalAdvance(tabText(index)) + 2 * (leastPadding + segments::inset) + slack
                          : fullWidth(index);
    return {width, std::max(leastHeight, metrics.height() + 2 * verticalPadding)};
}

QSize SymbolTabBar::minimumTabSizeHint(int index) const
{
    return {symbolEdge() + 2 * leastPadding, tabSizeHint(index).height()};
}

bool SymbolTabBar::narrow() const
{
    int wanted = 0;
    for (int index = 0; index < count(); ++index) {
        wanted += fullWidth(index);
    }
    return wanted > parentWidget()->width() - 2 * surroundings;
}

int SymbolTabBar::fullWidth(int index) const
{
    return symbolEdge() + symbolGap + QFontMetrics(font()).horizontalAdvance(tabText(index)) + 2 * horizontalPadding;
}

void SymbolTabBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    segments::paintTrack(painter, rect(), palette());
    for (int index = 0; index < count(); ++index) {
        paintTab(painter, index);
    }
}

bool SymbolTabBar::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setFont(fontFor(tabLabelText));
    }
    return QTabBar::event(event);
}

void SymbolTabBar::paintTab(QPainter& painter, int index) const
{
    QStyleOptionTab option;
    initStyleOption(&option, index);
    const segments::State state{index == currentIndex(), option.state.testFlag(QStyle::State_MouseOver), isEnabled()};
    constexpr int inset = segments::inset;
    const QRect piece = option.rect.adjusted(inset, inset, -inset, -inset);
    segments::paintSegment(painter, piece, state, palette());

    const QFontMetrics metrics(font());
    const QColor color = segments::textColor(state, palette());
    const int taken = narrow() ? 0 : symbolEdge() + symbolGap;
    const QString text = metrics.elidedText(tabText(index), elideMode(), piece.width() - 2 * leastPadding - taken);
    const QSize extent(taken + metrics.horizontalAdvance(text), piece.height());
    const QRect content = QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, extent, piece);
    if (!narrow()) {
        const QRect symbol = QStyle::alignedRect(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter,
                                                 QSize(symbolEdge(), symbolEdge()), content);
        const QColor symbolColor = state.chosen ? themeColor(ColorRole::Accent, palette()) : color;
        painting::drawSymbol(painter, symbol,
                             {tabData(index).toString(), symbolSize * textScale(), SymbolWeight::Medium, symbolColor});
    }
    painter.setFont(font());
    painter.setPen(color);
    const Qt::Alignment side = QStyle::visualAlignment(layoutDirection(), Qt::AlignTrailing | Qt::AlignVCenter);
    painter.drawText(content, static_cast<int>(side | Qt::AlignAbsolute) | Qt::TextSingleLine, text);
}

} // namespace lapsa
