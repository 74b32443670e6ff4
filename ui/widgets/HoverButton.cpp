// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HoverButton.h"

#include "Motion.h"

#include <QKeyEvent>

namespace lapsa {

HoverButton::HoverButton(QWidget* parent)
    : QAbstractButton(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    m_hover.setStartValue(0.0);
    m_hover.setEndValue(0.0);
    connect(&m_hover, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

double HoverButton::hoverProgress() const
{
    return m_hover.currentValue().toDouble();
}

void HoverButton::setHelp(const QString& help)
{
    setToolTip(help);
    setAccessibleName(help);
}

void HoverButton::enterEvent(QEnterEvent* event)
{
    QAbstractButton::enterEvent(event);
    motion::moveTo(m_hover, isEnabled() ? 1 : 0, motion::hoverDuration);
}

void HoverButton::leaveEvent(QEvent* event)
{
    QAbstractButton::leaveEvent(event);
    motion::moveTo(m_hover, 0, motion::hoverDuration);
}

void HoverButton::hideEvent(QHideEvent* event)
{
    QAbstractButton::hideEvent(event);
    motion::moveTo(m_hover, 0, std::chrono::milliseconds::zero());
}

void HoverButton::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_returnPresses && !event->isAutoRepeat()) {
            click();
        } else {
            event->ignore();
        }
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        event->ignore();
        return;
    default:
        QAbstractButton::keyPressEvent(event);
    }
}

} // namespace lapsa
