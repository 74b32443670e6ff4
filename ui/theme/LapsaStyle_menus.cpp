// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropShadow.h"
#include "LapsaStyle.h"
#include "Material.h"
#include "Painting.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int itemInset = 5;
constexpr int itemPadding = 10;
constexpr int itemVerticalPadding = 6;
constexpr int itemRadius = 4;
/// The hairline of a square menu; the mark of an entry lies inside it.
constexpr int hairline = 1;
constexpr DropShadow menuShadow{.extent = 14, .drop = 3, .opacity = 0.22};
constexpr QMargins shadowRoom = menuShadow.margins();
constexpr int separatorHeight = 11;
constexpr int checkColumn = 20;
constexpr double checkSize = 11;
constexpr int shortcutGap = 24;

bool separates(const QStyleOptionMenuItem& item)
{
    return item.menuItemType == QStyleOptionMenuItem::Separator;
}

/// Whether a menu has round corners, and room for its shadow.
bool isRound(const QWidget* menu)
{
    return menu != nullptr && menu->testAttribute(Qt::WA_TranslucentBackground);
}

/// How far to shift a menu, so that its visible part starts where the menu was requested.
int shiftFor(int start, int end, int pointer, std::pair<int, int> room)
{
    return std::abs(pointer - end) <= 2 && std::abs(pointer - start) > 2 ? room.second : -room.first;
}

int leadingRoom(const QStyleOptionMenuItem& item)
{
    return itemPadding + (item.menuHasCheckableItems ? checkColumn : 0);
}

} // namespace

void LapsaStyle::setTranslucencyAvailable(bool available)
{
    if (m_translucencyAvailable == available) {
        return;
    }
    m_translucencyAvailable = available;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        auto* const menu = qobject_cast<QMenu*>(window);
        if (menu != nullptr && menu->testAttribute(Qt::WA_WState_Polished)) {
            menu->close();
            shape(*menu);
        }
    }
}

void LapsaStyle::prepare(QMenu& menu)
{
    // The native window has an alpha channel in any case: a menu may outlast the end or the start of compositing.
    menu.setAttribute(Qt::WA_TranslucentBackground);
    std::ignore = menu.winId();
    menu.installEventFilter(this);
    shape(menu);
}

void LapsaStyle::shape(QMenu& menu) const
{
    menu.setAttribute(Qt::WA_TranslucentBackground, m_translucencyAvailable);
    menu.setContentsMargins(m_translucencyAvailable ? shadowRoom : QMargins());
}

bool LapsaStyle::eventFilter(QObject* watched, QEvent* event)
{
    auto* const menu = qobject_cast<QMenu*>(watched);
    if (!isRound(menu)) {
        return QProxyStyle::eventFilter(watched, event);
    }
    if (event->type() == QEvent::Show) {
        const QRect frame = menu->geometry();
        const QPoint pointer = QCursor::pos();
        menu->move(frame.topLeft() +
                   QPoint(shiftFor(frame.left(), frame.right(), pointer.x(), {shadowRoom.left(), shadowRoom.right()}),
                          shiftFor(frame.top(), frame.bottom(), pointer.y(), {shadowRoom.top(), shadowRoom.bottom()})));
    }
    if (event->type() == QEvent::MouseButtonPress) {
        const QPoint place = static_cast<QMouseEvent*>(event)->position().toPoint();
        if (!menu->rect().marginsRemoved(shadowRoom).contains(place)) {
            menu->close(); // a click on the shadow is outside the menu
            return true;
        }
    }
    return QProxyStyle::eventFilter(watched, event);
}

void LapsaStyle::drawMenuGround(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    if (!isRound(widget)) {
        material::paintSurface(painter, option.rect, 0, option.palette);
        return;
    }
    const QRect menu = widget->rect().marginsRemoved(shadowRoom);
    menuShadow.paint(painter, menu, material::controlRadius);
    material::paintSurface(painter, menu, material::controlRadius, option.palette);
}

void LapsaStyle::drawMenuItem(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
    if (item == nullptr) {
        return;
    }
    const QRect place = option.rect.adjusted(itemInset, 0, -itemInset, 0);
    if (separates(*item)) {
        painter.fillRect(QRect(place.left() + itemPadding, place.center().y(), place.width() - 2 * itemPadding, 1),
                         themeColor(ColorRole::Separator, option.palette));
        return;
    }
    const bool enabled = option.state.testFlag(State_Enabled);
    const bool selected = enabled && option.state.testFlag(State_Selected);
    if (selected) {
        const bool round = isRound(widget);
        const QRect marked = round ? place : option.rect.adjusted(hairline, 0, -hairline, 0);
        material::paintShape(painter, marked, round ? itemRadius : 0, themeColor(ColorRole::Accent, option.palette));
    }
    const QColor color = selected
                             ? themeColor(ColorRole::OnAccent, option.palette)
                             : option.palette.color(enabled ? QPalette::Active : QPalette::Disabled, QPalette::Text);
    if (item->checked) {
        const QRect mark = visualRect(option.direction, place,
                                      QRect(place.left() + itemPadding / 2, place.top(), checkColumn, place.height()));
        painting::drawSymbol(painter, mark, {u"checkmark"_s, checkSize, SymbolWeight::Semibold, color});
    }
    const QRect line = visualRect(option.direction, place, place.adjusted(leadingRoom(*item), 0, -itemPadding, 0));
    const QStringList parts = item->text.split(u'\t');
    painter.setFont(item->font);
    painter.setPen(color);
    const auto aligned = [&option](Qt::AlignmentFlag side) {
        return static_cast<int>(visualAlignment(option.direction, side | Qt::AlignVCenter) | Qt::AlignAbsolute) |
               Qt::TextSingleLine | Qt::TextHideMnemonic;
    };
    painter.drawText(line, aligned(Qt::AlignLeading), parts.first());
    if (parts.size() > 1) {
        painter.drawText(line, aligned(Qt::AlignTrailing), parts.last());
    }
}

QSize LapsaStyle::menuItemSize(const QStyleOption& option, const QSize& size)
{
    const auto* const item = qstyleoption_cast<const QStyleOptionMenuItem*>(&option);
    if (item == nullptr || separates(*item)) {
        return {size.width(), separatorHeight};
    }
    const QFontMetrics metrics(item->font);
    const QStringList parts = item->text.split(u'\t');
    int width = metrics.boundingRect(QRect(), Qt::TextHideMnemonic | Qt::TextSingleLine, parts.first()).width();
    if (parts.size() > 1) {
        width += shortcutGap + metrics.horizontalAdvance(parts.last());
    }
    return {width + leadingRoom(*item) + itemPadding + 2 * itemInset + 2, metrics.height() + 2 * itemVerticalPadding};
}

void LapsaStyle::drawToolTip(const QStyleOption& option, QPainter& painter)
{
    material::paintSurface(painter, option.rect, 0, option.palette);
}

} // namespace lapsa
