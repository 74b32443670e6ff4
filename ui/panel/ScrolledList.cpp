// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ScrolledList.h"

#include "ScrollFade.h"

#include <QApplication>
#include <QStyle>
#include <QWheelEvent>

namespace lapsa {

namespace {

/// Gap between the rows and the scroll bar, which is in the margin.
constexpr int barGap = 7;

} // namespace

ScrolledList::ScrolledList(QWidget* parent)
    : QWidget(parent)
    , m_bar(new QScrollBar(Qt::Vertical, parent))
    , m_topFade(new ScrollFade(Qt::TopEdge, this))
    , m_bottomFade(new ScrollFade(Qt::BottomEdge, this))
{
    m_bar->setFocusPolicy(Qt::NoFocus);
}

void ScrolledList::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeBar();
}

void ScrolledList::wheelEvent(QWheelEvent* event)
{
    QApplication::sendEvent(m_bar, event);
}

bool ScrolledList::event(QEvent* event)
{
    const bool done = QWidget::event(event);
    // The toolkit passes a new font of the application to event() only, not to changeEvent().
    const QEvent::Type type = event->type();
    if (type == QEvent::Move || type == QEvent::ApplicationFontChange || type == QEvent::LayoutDirectionChange) {
        placeBar();
    }
    return done;
}

void ScrolledList::updateFades()
{
    m_topFade->setGeometry(0, 0, width(), ScrollFade::extent);
    m_bottomFade->setGeometry(0, height() - ScrollFade::extent, width(), ScrollFade::extent);
    m_topFade->setVisible(m_bar->value() > 0);
    m_bottomFade->setVisible(m_bar->value() < m_bar->maximum());
    m_topFade->raise();
    m_bottomFade->raise();
}

void ScrolledList::placeBar()
{
    const int extent = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_bar);
    const int left = isRightToLeft() ? x() - barGap - extent : x() + width() + barGap;
    m_bar->setGeometry(left, y(), extent, height());
    m_bar->raise();
}

} // namespace lapsa
