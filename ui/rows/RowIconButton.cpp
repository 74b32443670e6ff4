// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RowIconButton.h"

#include "FocusRing.h"
#include "Material.h"
#include "Painting.h"
#include "ThemePalette.h"

#include <QMouseEvent>
#include <QPainter>

namespace lapsa {

namespace {

constexpr int extent = 30;
constexpr int radius = 10;
constexpr double symbolSize = 13;
constexpr double dangerRest = 0.16;
constexpr double dangerHovered = 0.3;
constexpr double accentRest = 0.055;
constexpr double accentHovered = 0.22;
/// The factor by which the ground is stronger while the button is pressed.
constexpr double pressedGain = 1.4;

} // namespace

RowIconButton::RowIconButton(const QString& systemName, bool danger, QWidget* parent)
    : HoverButton(parent)
    , m_systemName(systemName)
    , m_danger(danger)
{
    setFixedSize(sizeHint());
    setFocusRadius(*this, radius);
}

RowIconButton::Look RowIconButton::lookFor(bool danger, bool hovered, const QPalette& palette)
{
    const QColor red = themeColor(ColorRole::Danger, palette);
    const QColor accent = themeColor(ColorRole::Accent, palette);
    if (danger) {
        return {.foreground = red, .background = withOpacity(red, hovered ? dangerHovered : dangerRest)};
    }
    return {.foreground = hovered ? accent : themeColor(ColorRole::Primary, palette),
            .background = withOpacity(accent, hovered ? accentHovered : accentRest)};
}

void RowIconButton::setSystemName(const QString& systemName)
{
    if (systemName != m_systemName) {
        m_systemName = systemName;
        update();
    }
}

QSize RowIconButton::sizeHint() const
{
    return {extent, extent};
}

void RowIconButton::paintEvent(QPaintEvent*)
{
    const Look rest = lookFor(m_danger, false, palette());
    const Look hovered = lookFor(m_danger, true, palette());
    QColor background = mixed(rest.background, hovered.background, hoverProgress());
    if (isDown()) {
        background = withOpacity(background, pressedGain);
    }
    const QColor foreground = mixed(rest.foreground, hovered.foreground, hoverProgress());

    QPainter painter(this);
    material::paintShape(painter, rect(), radius, background);
    painting::drawSymbol(painter, rect(),
                         {m_systemName, symbolSize, SymbolWeight::Semibold, painting::enabledColor(*this, foreground)});
}

void RowIconButton::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The first click may have removed its row: the second must not act on the row now under the pointer.
    event->accept();
}

} // namespace lapsa
