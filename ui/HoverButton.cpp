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
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && !event->isAutoRepeat()) {
        click();
        return;
    }
    QAbstractButton::keyPressEvent(event);
}

} // namespace lapsa
