// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FocusRing.h"

#include "Material.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPainter>

namespace lapsa {

namespace {

constexpr char radiusProperty[] = "lapsaFocusRadius";
constexpr char ownFocusProperty[] = "lapsaOwnFocus";
constexpr int ringWidth = 2;

bool movedByKeyboard(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

bool isText(const QWidget& widget)
{
    return qobject_cast<const QLineEdit*>(&widget) != nullptr;
}

} // namespace

void setFocusRadius(QWidget& widget, int radius)
{
    widget.setProperty(radiusProperty, radius);
}

void drawFocusByItself(QWidget& widget)
{
    widget.setProperty(ownFocusProperty, true);
}

FocusRing::FocusRing(QWidget& window)
    : QWidget(&window)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
    qApp->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event)
{
    auto* const widget = watched->isWidgetType() ? static_cast<QWidget*>(watched) : nullptr;
    if (widget == nullptr || widget == this || widget->window() != window()) {
        return false;
    }
    switch (event->type()) {
    case QEvent::FocusIn: {
        const auto reason = static_cast<QFocusEvent*>(event)->reason();
        const bool clicked = reason == Qt::MouseFocusReason;
        if (movedByKeyboard(reason) || isText(*widget) || (!clicked && m_target != nullptr)) {
            follow(widget);
        } else if (clicked) {
            follow(nullptr);
        }
        break;
    }
    case QEvent::FocusOut:
        if (widget == m_target) {
            hide();
        }
        break;
    case QEvent::Hide:
        if (widget == window() && !event->spontaneous()) {
            follow(nullptr); // when opened again, the window waits for the keyboard again
            break;
        }
        [[fallthrough]];
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
        if (m_target != nullptr && (widget == m_target || widget->isAncestorOf(m_target))) {
            place();
        }
        break;
    default:
        break;
    }
    return false;
}

void FocusRing::paintEvent(QPaintEvent*)
{
    if (m_target == nullptr) {
        return;
    }
    QPainter painter(this);
    painter.setClipRect(visiblePart().translated(-pos()));
    const QVariant radius = m_target->property(radiusProperty);
    const int inner = radius.isValid() ? radius.toInt() : material::controlRadius;
    material::paintBorder(painter, rect(), inner + reach, QPen(themeColor(ColorRole::Accent, palette()), ringWidth));
}

void FocusRing::follow(QWidget* target)
{
    if (target != nullptr && target->property(ownFocusProperty).toBool()) {
        hide();
        return;
    }
    m_target = target;
    place();
}

void FocusRing::place()
{
    if (m_target == nullptr || !m_target->isVisible() || !m_target->hasFocus()) {
        hide();
        return;
    }
    const QRect control(m_target->mapTo(window(), QPoint()), m_target->size());
    setGeometry(control.adjusted(-reach, -reach, reach, reach));
    show();
    raise();
    update();
}

QRect FocusRing::visiblePart() const
{
    QRect visible = window()->rect();
    for (const QWidget* around = m_target->parentWidget(); around != nullptr && around != window();
         around = around->parentWidget()) {
        const QRect area(around->mapTo(window(), QPoint()), around->size());
        visible &= area.adjusted(-reach, -reach, reach, reach);
    }
    return visible;
}

} // namespace lapsa
