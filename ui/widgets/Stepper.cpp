// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Stepper.h"

#include "FocusRing.h"
#include "Material.h"
#include "Painting.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>

#include <cmath>

namespace lapsa {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int halfWidth = 22;
constexpr int controlHeight = 24;
constexpr int radius = 7;
constexpr double symbolSize = 9;
constexpr double hoverOpacity = 0.07;
constexpr double heldOpacity = 0.14;
/// For a half that cannot step because the range ends.
constexpr double impossibleOpacity = 0.35;
constexpr int dividerInset = 5;
constexpr auto firstRepeat = 400ms;
constexpr auto nextRepeat = 70ms;

/// A length that grows with the user's text size.
int scaled(int length)
{
    return static_cast<int>(std::lround(length * textScale()));
}

} // namespace

Stepper::Stepper(const QString& name, QWidget* parent)
    : QSpinBox(parent)
{
    setAccessibleName(name);
    setFixedSize(sizeHint());
    setFocusPolicy(Qt::StrongFocus);
    setKeyboardTracking(false);
    setMouseTracking(true);
    setAttribute(Qt::WA_Hover);
    setFocusRadius(*this, radius);
    lineEdit()->hide();
    connect(&m_repeat, &QTimer::timeout, this, &Stepper::stepHeld);
}

void Stepper::setDimmed(bool dimmed)
{
    if (dimmed != m_dimmed) {
        m_dimmed = dimmed;
        update();
    }
}

QSize Stepper::sizeHint() const
{
    return {2 * scaled(halfWidth), scaled(controlHeight)};
}

QRect Stepper::decrementRect() const
{
    return QStyle::visualRect(layoutDirection(), rect(), QRect(0, 0, width() / 2, height()));
}

QRect Stepper::incrementRect() const
{
    return QStyle::visualRect(layoutDirection(), rect(), QRect(width() / 2, 0, width() / 2, height()));
}

void Stepper::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    material::paintSurface(painter, rect(), radius, palette());
    paintHalf(painter, -1);
    paintHalf(painter, 1);
    painter.fillRect(QRect(width() / 2, scaled(dividerInset), 1, height() - 2 * scaled(dividerInset)),
                     themeColor(ColorRole::Separator, palette()));
}

void Stepper::resizeEvent(QResizeEvent*)
{
    // The number is shown elsewhere: the inner field is not part of the layout.
}

bool Stepper::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setFixedSize(sizeHint());
    }
    return QSpinBox::event(event);
}

void Stepper::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        return;
    }
    m_held = halfAt(event->position().toPoint());
    stepBy(m_held);
    m_repeat.start(firstRepeat);
    update();
}

void Stepper::mouseMoveEvent(QMouseEvent* event)
{
    const int half = halfAt(event->position().toPoint());
    if (half != m_hovered) {
        m_hovered = half;
        update();
    }
}

void Stepper::mouseReleaseEvent(QMouseEvent*)
{
    m_held = 0;
    m_repeat.stop();
    update();
}

void Stepper::leaveEvent(QEvent* event)
{
    QSpinBox::leaveEvent(event);
    m_hovered = 0;
    update();
}

void Stepper::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
        stepBy(isRightToLeft() ? 1 : -1);
        return;
    case Qt::Key_Right:
        stepBy(isRightToLeft() ? -1 : 1);
        return;
    case Qt::Key_Home:
        setValue(minimum());
        return;
    case Qt::Key_End:
        setValue(maximum());
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        QSpinBox::keyPressEvent(event);
        return;
    default:
        event->ignore(); // typed text would go into an invisible field
    }
}

void Stepper::wheelEvent(QWheelEvent* event)
{
    event->ignore(); // scrolling a page must not change the control under the pointer
}

void Stepper::contextMenuEvent(QContextMenuEvent* event)
{
    event->ignore();
}

int Stepper::halfAt(const QPoint& position) const
{
    if (decrementRect().contains(position)) {
        return -1;
    }
    return incrementRect().contains(position) ? 1 : 0;
}

void Stepper::paintHalf(QPainter& painter, int half) const
{
    const QRect place = half < 0 ? decrementRect() : incrementRect();
    const bool possible = half < 0 ? value() > minimum() : value() < maximum();
    const QColor primary = themeColor(m_dimmed ? ColorRole::Secondary : ColorRole::Primary, palette());
    if (possible && (m_held == half || m_hovered == half)) {
        painter.save();
        painter.setClipRect(place);
        material::paintShape(painter, rect(), radius,
                             withOpacity(primary, m_held == half ? heldOpacity : hoverOpacity));
        painter.restore();
    }
    const QColor color = possible ? painting::enabledColor(*this, primary) : withOpacity(primary, impossibleOpacity);
    painting::drawSymbol(painter, place,
                         {half < 0 ? u"minus"_s : u"plus"_s, symbolSize * textScale(),
                          m_dimmed ? SymbolWeight::Medium : SymbolWeight::Semibold, color});
}

void Stepper::stepHeld()
{
    m_repeat.start(nextRepeat);
    if (m_held == m_hovered) {
        stepBy(m_held);
    }
}

} // namespace lapsa
