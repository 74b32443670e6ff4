// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaStyle.h"

#include "Material.h"
#include "Motion.h"
#include "ThemePalette.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr int fieldHeight = 30;
constexpr int fieldPadding = 10;
constexpr int buttonPadding = 14;
constexpr int buttonWidth = 72;
constexpr int comboArrowWidth = 26;
constexpr int scrollBarExtent = 12;
constexpr int leastSlider = 28;
constexpr int menuPadding = 5;
constexpr int indicatorExtent = 18;
constexpr int toolTipMargin = 6;
constexpr int listItemHeight = 28;
constexpr int cellPadding = 5;
constexpr int headerPadding = 6;
/// Between the rounded edge of a list and its content.
constexpr QMargins listPadding(5, 5, 5, 5);

/// A list on its own ground; a list in a popup uses the popup's.
bool isFramedList(const QWidget* widget)
{
    const auto* const list = qobject_cast<const QAbstractItemView*>(widget);
    return list != nullptr && list->frameShape() == QFrame::StyledPanel && !list->isWindow();
}

/// The parts of a scroll bar without arrows: the groove takes up the whole bar.
QRect scrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part)
{
    const bool vertical = bar.orientation == Qt::Vertical;
    const int length = vertical ? bar.rect.height() : bar.rect.width();
    const qint64 range = qint64(bar.maximum) - bar.minimum;
    const qint64 wanted = length * qint64(bar.pageStep) / std::max<qint64>(1, range + bar.pageStep);
    const int slider = static_cast<int>(std::clamp<qint64>(wanted, std::min(leastSlider, length), length));
    const int start =
        QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition, length - slider, bar.upsideDown);
    const auto along = [&](int from, int extent) {
        const QRect place =
            vertical ? QRect(0, from, bar.rect.width(), extent) : QRect(from, 0, extent, bar.rect.height());
        return place.translated(bar.rect.topLeft());
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider:
        return along(start, slider);
    case QStyle::SC_ScrollBarSubPage:
        return along(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return along(start + slider, length - start - slider);
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    default:
        return {};
    }
}

} // namespace

LapsaStyle::LapsaStyle()
    : QProxyStyle(u"Fusion"_s)
{}

void LapsaStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (auto* const menu = qobject_cast<QMenu*>(widget); menu != nullptr) {
        prepare(*menu);
    }
    if (qobject_cast<QScrollBar*>(widget) != nullptr || qobject_cast<QComboBox*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void LapsaStyle::unpolish(QWidget* widget)
{
    QProxyStyle::unpolish(widget);
}

void LapsaStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        drawLineEdit(*option, *painter);
        return;
    case PE_IndicatorCheckBox:
        drawCheckBox(*option, *painter);
        return;
    case PE_PanelMenu:
    case PE_FrameMenu:
        drawMenuGround(*option, *painter, widget);
        return;
    case PE_PanelTipLabel:
        drawToolTip(*option, *painter);
        return;
    case PE_Frame:
        drawListFrame(*option, *painter, widget);
        return;
    case PE_IndicatorHeaderArrow:
        drawSortArrow(*option, *painter, widget);
        return;
    case PE_PanelItemViewItem:
        drawListItem(*option, *painter);
        return;
    case PE_PanelItemViewRow: // a list's ground has a single colour
        return;
    case PE_PanelButtonTool:
        drawToolButton(*option, *painter);
        return;
    case PE_FrameFocusRect: // FocusRing shows the focus
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void LapsaStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const
{
    switch (element) {
    case CE_MenuItem:
        drawMenuItem(*option, *painter, widget);
        return;
    case CE_MenuEmptyArea:
        return;
    case CE_HeaderSection:
        drawHeaderSection(*option, *painter);
        return;
    case CE_HeaderLabel:
        drawHeaderLabel(*option, *painter, widget);
        return;
    case CE_PushButtonBevel:
        drawPushButton(*option, *painter);
        return;
    default:
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void LapsaStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const
{
    switch (control) {
    case CC_ComboBox:
        drawComboBox(*option, *painter);
        return;
    case CC_ScrollBar:
        drawScrollBar(*option, *painter, subControlRect(control, option, SC_ScrollBarSlider, widget));
        return;
    default:
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
}

QSize LapsaStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                   const QWidget* widget) const
{
    switch (type) {
    case CT_MenuItem:
        return menuItemSize(*option, size);
    case CT_ItemViewItem: {
        const QSize item = QProxyStyle::sizeFromContents(type, option, size, widget);
        return {item.width(), std::max(listItemHeight, item.height() + 6)};
    }
    case CT_HeaderSection: {
        const QSize section = QProxyStyle::sizeFromContents(type, option, size, widget);
        return {section.width(), std::max(listItemHeight, section.height())};
    }
    case CT_LineEdit:
        return {size.width() + 2 * fieldPadding, std::max(fieldHeight, size.height() + 10)};
    case CT_ComboBox:
        return {size.width() + 2 * fieldPadding + comboArrowWidth, std::max(fieldHeight, size.height() + 10)};
    case CT_PushButton:
        return {std::max(buttonWidth, size.width() + 2 * buttonPadding), std::max(fieldHeight, size.height() + 10)};
    default:
        return QProxyStyle::sizeFromContents(type, option, size, widget);
    }
}

QRect LapsaStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                 const QWidget* widget) const
{
    if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
        return visualRect(option->direction, option->rect, option->rect.adjusted(fieldPadding, 0, -comboArrowWidth, 0));
    }
    if (control == CC_ComboBox && part == SC_ComboBoxArrow) {
        const QRect arrow(option->rect.right() - comboArrowWidth, option->rect.top(), comboArrowWidth,
                          option->rect.height());
        return visualRect(option->direction, option->rect, arrow);
    }
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr) {
        return QProxyStyle::subControlRect(control, option, part, widget);
    }
    return scrollBarPart(*bar, part);
}

QRect LapsaStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const
{
    if (element == SE_ShapedFrameContents && isFramedList(widget)) {
        return option->rect.marginsRemoved(listPadding);
    }
    if (element == SE_LineEditContents) {
        return option->rect.adjusted(fieldPadding - 2, 0, -fieldPadding + 2, 0);
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

int LapsaStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_ScrollBarSliderMin:
        return leastSlider;
    case PM_MenuPanelWidth:
    case PM_MenuHMargin:
        return 0;
    case PM_MenuVMargin:
        return menuPadding;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
        return indicatorExtent;
    case PM_FocusFrameHMargin: // on both sides of a cell's content
        return cellPadding;
    case PM_HeaderMargin:
        return headerPadding;
    case PM_ToolTipLabelFrameWidth:
        return toolTipMargin;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int LapsaStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const
{
    switch (hint) {
    case SH_Widget_Animation_Duration:
        return motion::milliseconds(motion::hoverDuration);
    case SH_ScrollBar_LeftClickAbsolutePosition:
    case SH_ScrollBar_ContextMenu:
    case SH_ComboBox_Popup:
    case SH_UnderlineShortcut:
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_Menu_MouseTracking:
        return 1;
    case SH_ToolTipLabel_Opacity:
        return 255;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
}

} // namespace lapsa
