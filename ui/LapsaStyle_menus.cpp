// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaStyle.h"
#include "Material.h"
#include "Painting.h"
#include "ThemePalette.h"

#include <QMenu>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int itemInset = 5;
constexpr int itemPadding = 10;
constexpr int itemVerticalPadding = 6;
constexpr int itemRadius = 6;
constexpr int separatorHeight = 11;
constexpr int checkColumn = 20;
constexpr double checkSize = 11;
constexpr int shortcutGap = 24;

bool separates(const QStyleOptionMenuItem& item)
{
    return item.menuItemType == QStyleOptionMenuItem::Separator;
}

int leadingRoom(const QStyleOptionMenuItem& item)
{
    return itemPadding + (item.menuHasCheckableItems ? checkColumn : 0);
}

} // namespace

void LapsaStyle::drawMenuGround(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    const bool round = widget != nullptr && widget->testAttribute(Qt::WA_TranslucentBackground);
    material::paintSurface(painter, option.rect, round ? material::controlRadius : 0, option.palette);
}

void LapsaStyle::drawMenuItem(const QStyleOption& option, QPainter& painter)
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
        material::paintShape(painter, place, itemRadius, themeColor(ColorRole::Accent, option.palette));
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
