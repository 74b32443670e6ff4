// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Toggle.h"

#include "FocusRing.h"
#include "Material.h"
#include "Motion.h"
#include "Painting.h"
#include "ThemePalette.h"

#include <QEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace lapsa {

using namespace std::chrono_literals;

namespace {

constexpr int switchWidth = 36;
constexpr int switchHeight = 20;
constexpr int knobInset = 2;
constexpr int labelGap = 16;
constexpr int leastHeight = 24;
/// Higher than any text, but within the range of text layout.
constexpr int unlimited = 1 << 20;
/// Track of a switch that is off: strong enough to look like a control.
constexpr double offTrackOpacity = 0.75;

/// The switch grows with the text beside it.
QSize switchSize()
{
    return {static_cast<int>(std::lround(switchWidth * textScale())),
            static_cast<int>(std::lround(switchHeight * textScale()))};
}

} // namespace

Toggle::Toggle(const QString& text, QWidget* parent)
    : QCheckBox(parent)
{
    setLabel(text);
    setFont(fontFor(m_style));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setFocusRadius(*this, material::controlRadius);
    m_position.setStartValue(0.0);
    m_position.setEndValue(0.0);
    connect(&m_position, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(this, &QCheckBox::toggled, this,
            [this](bool on) { motion::moveTo(m_position, on ? 1 : 0, isVisible() ? motion::hoverDuration : 0ms); });
    connect(this, &QCheckBox::toggled, this, [this](bool on) {
        if (!m_showing) {
            emit switched(on);
        }
    });
}

void Toggle::setTextStyle(const TextStyle& style)
{
    m_style = style;
    setFont(fontFor(style));
    updateGeometry();
}

void Toggle::setElideMode(Qt::TextElideMode mode)
{
    m_elideMode = mode;
    updateGeometry();
    update();
}

void Toggle::setLabel(const QString& text)
{
    const QString line = singleLine(text);
    if (line == m_label) {
        return;
    }
    m_label = line;
    setAccessibleName(line);
    updateGeometry();
    update();
}

void Toggle::showChecked(bool on)
{
    const QScopedValueRollback showing(m_showing, true);
    setChecked(on);
}

QSize Toggle::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(m_label) + labelGap + switchSize().width(),
            std::max({leastHeight, metrics.height(), switchSize().height()})};
}

QSize Toggle::minimumSizeHint() const
{
    return {labelGap + switchSize().width(), sizeHint().height()};
}

int Toggle::heightForWidth(int width) const
{
    const QRect bounds(0, 0, std::max(1, width - labelGap - switchSize().width()), unlimited);
    const int text = QFontMetrics(font()).boundingRect(bounds, Qt::TextWordWrap, m_label).height();
    return std::max({leastHeight, text, switchSize().height()});
}

void Toggle::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintLabel(painter);
    paintSwitch(painter);
}

bool Toggle::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setTextStyle(m_style);
    }
    return QCheckBox::event(event);
}

void Toggle::keyPressEvent(QKeyEvent* event)
{
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QCheckBox::keyPressEvent(event);
}

bool Toggle::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

QRect Toggle::switchRect() const
{
    return QStyle::alignedRect(layoutDirection(), Qt::AlignTrailing | Qt::AlignVCenter, switchSize(), rect());
}

void Toggle::paintSwitch(QPainter& painter) const
{
    const double on = m_position.currentValue().toDouble();
    const QRectF track = switchRect();
    const QColor off = withOpacity(themeColor(ColorRole::Secondary, palette()), offTrackOpacity);
    const QColor color = mixed(off, themeColor(ColorRole::Accent, palette()), on);
    material::paintShape(painter, track, track.height() / 2, painting::enabledColor(*this, color));

    const double inset = knobInset * textScale();
    const double edge = track.height() - 2 * inset;
    const double travel = track.width() - edge - 2 * inset;
    const double way = isRightToLeft() ? 1 - on : on;
    const QRectF knob(track.left() + inset + travel * way, track.top() + inset, edge, edge);
    material::paintShape(painter, knob, edge / 2, QColor(Qt::white));
}

void Toggle::paintLabel(QPainter& painter) const
{
    QRect place = rect();
    const int taken = switchSize().width() + labelGap;
    place.adjust(isRightToLeft() ? taken : 0, 0, isRightToLeft() ? 0 : -taken, 0);
    painter.setFont(font());
    painter.setPen(painting::enabledColor(*this, themeColor(ColorRole::Primary, palette())));
    const Qt::Alignment side =
        QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter) | Qt::AlignAbsolute;
    if (m_elideMode == Qt::ElideNone) {
        painter.drawText(place, static_cast<int>(side) | Qt::TextWordWrap, m_label);
        return;
    }
    const QString shown = QFontMetrics(font()).elidedText(m_label, m_elideMode, place.width());
    painter.drawText(place, static_cast<int>(side) | Qt::TextSingleLine, shown);
}

} // namespace lapsa
