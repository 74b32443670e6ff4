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

constexpr int checkRadius = 5;
constexpr double checkSize = 11;
constexpr double arrowSize = 11;
constexpr int arrowInset = 8;
constexpr double disabledOpacity = 0.4;
/// Edge of a field: the control must be recognisable without its ground.
constexpr double fieldEdgeOpacity = 0.35;
constexpr int sliderInset = 3;
constexpr double sliderRest = 0.28;
constexpr double sliderHovered = 0.45;
constexpr double sliderHeld = 0.60;
constexpr double pressedStrength = 2;

QColor fieldEdge(const QPalette& palette)
{
    return withOpacity(themeColor(ColorRole::Secondary, palette), fieldEdgeOpacity);
}

double hoverStrength(const QStyleOption& option)
{
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return 0;
    }
    if (option.state.testFlag(QStyle::State_Sunken)) {
        return pressedStrength;
    }
    return option.state.testFlag(QStyle::State_MouseOver) ? 1 : 0;
}

} // namespace

void LapsaStyle::drawLineEdit(const QStyleOption& option, QPainter& painter)
{
    const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(&option);
    if (frame != nullptr && frame->lineWidth <= 0) {
        return; // a field inside another control has no edge
    }
    material::paintShape(painter, option.rect, material::controlRadius, themeColor(ColorRole::Surface, option.palette));
    material::paintBorder(painter, option.rect, material::controlRadius, QPen(fieldEdge(option.palette), 1));
}

void LapsaStyle::drawCheckBox(const QStyleOption& option, QPainter& painter)
{
    const QPalette& palette = option.palette;
    const double opacity = option.state.testFlag(State_Enabled) ? 1 : disabledOpacity;
    if (!option.state.testFlag(State_On)) {
        material::paintShape(painter, option.rect, checkRadius, themeColor(ColorRole::Surface, palette));
        material::paintBorder(painter, option.rect, checkRadius,
                              QPen(withOpacity(themeColor(ColorRole::Secondary, palette), opacity), 1));
        return;
    }
    const QColor accent = withOpacity(themeColor(ColorRole::Accent, palette), opacity);
    material::paintShape(painter, option.rect, checkRadius, accent);
    painting::drawSymbol(painter, option.rect,
                         {u"checkmark"_s, checkSize, SymbolWeight::Semibold, themeColor(ColorRole::OnAccent, palette)});
}

void LapsaStyle::drawPushButton(const QStyleOption& option, QPainter& painter)
{
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    const bool isDefault = button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
    material::paintSurface(painter, option.rect, material::controlRadius, option.palette, hoverStrength(option));
    if (isDefault) {
        const QColor accent = themeColor(ColorRole::Accent, option.palette);
        material::paintBorder(painter, option.rect, material::controlRadius, QPen(accent, 1.5));
    }
}

void LapsaStyle::drawComboBox(const QStyleOptionComplex& option, QPainter& painter)
{
    material::paintSurface(painter, option.rect, material::controlRadius, option.palette, hoverStrength(option));
    material::paintBorder(painter, option.rect, material::controlRadius, QPen(fieldEdge(option.palette), 1));
    const QSize extent(symbolExtent(arrowSize) + 2 * arrowInset, option.rect.height());
    const QRect arrow = alignedRect(option.direction, Qt::AlignTrailing | Qt::AlignVCenter, extent, option.rect);
    const double opacity = option.state.testFlag(State_Enabled) ? 1 : disabledOpacity;
    const QColor color = withOpacity(themeColor(ColorRole::Secondary, option.palette), opacity);
    painting::drawSymbol(painter, arrow, {u"chevron.down"_s, arrowSize, SymbolWeight::Semibold, color});
}

void LapsaStyle::drawScrollBar(const QStyleOptionComplex& option, QPainter& painter, const QRect& slider)
{
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
    if (bar == nullptr || bar->maximum <= bar->minimum) {
        return;
    }
    const bool held = option.state.testFlag(State_Sunken);
    const bool hovered = option.state.testFlag(State_MouseOver);
    const double opacity = held ? sliderHeld : hovered ? sliderHovered : sliderRest;
    const QRectF place = QRectF(slider).adjusted(sliderInset, sliderInset, -sliderInset, -sliderInset);
    const double radius = std::min(place.width(), place.height()) / 2;
    material::paintShape(painter, place, radius, withOpacity(themeColor(ColorRole::Primary, option.palette), opacity));
}

} // namespace lapsa
