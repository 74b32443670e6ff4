// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Localized.h"
#include "RecoveryDelegate.h"
#include "RecoveryListView.h"
#include "RecoveryModel.h"
#include "TextStyle.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QMouseEvent>
#include <QToolTip>

namespace lapsa {

using namespace Qt::StringLiterals;

using Button = RecoveryRowLayout::Button;

RecoveryRowLayout RecoveryListView::layoutAt(const QModelIndex& index) const
{
    return RecoveryDelegate::layoutOf(index, visualRect(index), layoutDirection());
}

void RecoveryListView::touch(const QPoint& point)
{
    const QModelIndex index = indexAt(point);
    const Button button = index.isValid() ? layoutAt(index).buttonAt(point) : Button::None;
    const RecoveryDelegate::Touched touched{.index = index, .button = button};
    if (touched != m_delegate->touched()) {
        m_delegate->setTouched(touched);
        viewport()->update();
    }
}

void RecoveryListView::untouch()
{
    if (m_delegate->touched().button != Button::None) {
        m_delegate->setTouched({});
        viewport()->update();
    }
}

void RecoveryListView::mousePressEvent(QMouseEvent* event)
{
    showRing(false);
    touch(event->position().toPoint());
    RecoveryDelegate::Touched touched = m_delegate->touched();
    if (event->button() == Qt::LeftButton && touched.button != Button::None) {
        touched.pressed = true;
        m_delegate->setTouched(touched);
        viewport()->update();
        return; // the selection stays
    }
    QListView::mousePressEvent(event);
}

void RecoveryListView::mouseMoveEvent(QMouseEvent* event)
{
    if (m_delegate->touched().pressed) {
        return;
    }
    touch(event->position().toPoint());
    QListView::mouseMoveEvent(event);
}

void RecoveryListView::mouseReleaseEvent(QMouseEvent* event)
{
    const RecoveryDelegate::Touched touched = m_delegate->touched();
    if (!touched.pressed) {
        QListView::mouseReleaseEvent(event);
        return;
    }
    touch(event->position().toPoint());
    viewport()->update();
    const RecoveryDelegate::Touched now = m_delegate->touched();
    if (touched.index.isValid() && now.index == touched.index && now.button == touched.button) {
        emit pressed(touched.button, {touched.index.row()});
    }
}

void RecoveryListView::mouseDoubleClickEvent(QMouseEvent* event)
{
    // The first click may have removed its row: the second must not act on the row now under the pointer.
    const QModelIndex index = indexAt(event->position().toPoint());
    if (!index.isValid() || layoutAt(index).buttonAt(event->position().toPoint()) == Button::None) {
        QListView::mouseDoubleClickEvent(event);
    }
}

QString RecoveryListView::helpAt(const QPoint& point) const
{
    const QModelIndex index = indexAt(point);
    if (!index.isValid()) {
        return {};
    }
    const RecoveryRowLayout layout = layoutAt(index);
    switch (layout.buttonAt(point)) {
    case Button::PutBack:
        return {};
    case Button::Delete:
        return Localized::text(u"Delete now"_s, u"Elimina ora"_s);
    case Button::Stop:
        return Localized::text(u"Stop"_s, u"Interrompi"_s);
    case Button::None:
        break;
    }
    const QString name = index.data().toString();
    if (layout.name.contains(point)) {
        const bool cut = QFontMetrics(fontFor(headlineText)).horizontalAdvance(name) > layout.name.width();
        return cut ? plainToolTip(name) : QString();
    }
    const QString origin = m_model.originAt(index.row());
    const bool cut = QFontMetrics(fontFor(calloutText)).horizontalAdvance(origin) > layout.origin.width();
    return cut && layout.origin.contains(point) ? plainToolTip(origin) : QString();
}

bool RecoveryListView::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        QToolTip::showText(help->globalPos(), helpAt(help->pos()), viewport());
        return true;
    }
    if (event->type() == QEvent::Leave && !m_delegate->touched().pressed) {
        untouch();
    }
    return QListView::viewportEvent(event);
}

} // namespace lapsa
