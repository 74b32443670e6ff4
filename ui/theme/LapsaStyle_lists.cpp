// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaStyle.h"
#include "Material.h"
#include "Painting.h"
#include "ThemePalette.h"

#include <QPainter>
#include <QStyleOption>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int itemRadius = 6;
constexpr double hoverOpacity = 0.06;
constexpr double pressedOpacity = 0.12;
constexpr double sortArrowSize = 10;

QColor hoverTint(const QStyleOption& option, double opacity)
{
    return withOpacity(themeColor(ColorRole::Primary, option.palette), opacity);
}

} // namespace

void LapsaStyle::drawListFrame(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    const bool popup = widget == nullptr || widget->isWindow();
    material::paintSurface(painter, option.rect, popup ? 0 : material::controlRadius, option.palette);
}

void LapsaStyle::drawSortArrow(const QStyleOption& option, QPainter& painter, const QWidget* widget)
{
    const auto* const header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
    if (header == nullptr || widget == nullptr || header->sortIndicator == QStyleOptionHeader::None) {
        return;
    }
    // The toolkit's "down" means ascending order.
    const bool ascending = header->sortIndicator == QStyleOptionHeader::SortDown;
    // The toolkit places it above the middle of the line.
    const QRect place(option.rect.left(), 0, option.rect.width(), widget->height());
    painting::drawSymbol(painter, place,
                         {ascending ? u"chevron.down"_s : u"chevron.up"_s, sortArrowSize, SymbolWeight::Semibold,
                          themeColor(ColorRole::Secondary, option.palette)});
}

void LapsaStyle::drawListItem(const QStyleOption& option, QPainter& painter)
{
    const auto* const item = qstyleoption_cast<const QStyleOptionViewItem*>(&option);
    const bool selected = option.state.testFlag(State_Selected);
    if (item == nullptr || (!selected && !option.state.testFlag(State_MouseOver))) {
        return;
    }
    // The cells of a row are joined: only the outer ends are round.
    const auto position = item->viewItemPosition;
    const bool starts = position != QStyleOptionViewItem::Middle && position != QStyleOptionViewItem::End;
    const bool ends = position != QStyleOptionViewItem::Middle && position != QStyleOptionViewItem::Beginning;
    const bool leftRound = option.direction == Qt::LeftToRight ? starts : ends;
    const bool rightRound = option.direction == Qt::LeftToRight ? ends : starts;
    const QColor color = selected ? themeColor(ColorRole::Accent, option.palette) : hoverTint(option, hoverOpacity);
    painter.save();
    painter.setClipRect(option.rect);
    material::paintShape(painter, option.rect.adjusted(leftRound ? 1 : -itemRadius, 0, rightRound ? -1 : itemRadius, 0),
                         itemRadius, color);
    painter.restore();
}

void LapsaStyle::drawHeaderSection(const QStyleOption& option, QPainter& painter)
{
    painter.fillRect(option.rect, themeColor(ColorRole::Surface, option.palette));
    painter.fillRect(QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
                     themeColor(ColorRole::Separator, option.palette));
}

void LapsaStyle::drawHeaderLabel(const QStyleOption& option, QPainter& painter, const QWidget* widget) const
{
    const auto* const header = qstyleoption_cast<const QStyleOptionHeader*>(&option);
    if (header == nullptr) {
        return;
    }
    // The toolkit uses the text's direction; a column follows the window's.
    QStyleOptionHeader aligned(*header);
    aligned.textAlignment = visualAlignment(header->direction, header->textAlignment) | Qt::AlignAbsolute;
    QProxyStyle::drawControl(CE_HeaderLabel, &aligned, &painter, widget);
}

void LapsaStyle::drawToolButton(const QStyleOption& option, QPainter& painter)
{
    const bool pressed = option.state.testFlag(State_Sunken) || option.state.testFlag(State_On);
    const bool hovered = option.state.testFlag(State_Enabled) && option.state.testFlag(State_MouseOver);
    if (pressed || hovered) {
        material::paintShape(painter, option.rect, itemRadius,
                             hoverTint(option, pressed ? pressedOpacity : hoverOpacity));
    }
}

} // namespace lapsa
