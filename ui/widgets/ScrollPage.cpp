// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ScrollPage.h"

#include "ScrollFade.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

namespace lapsa {

namespace {

constexpr int sectionSpacing = 16;
/// Between the sections and the scroll bar.
constexpr int barGap = 7;

} // namespace

ScrollPage::ScrollPage(const QString& name, QWidget* parent)
    : QScrollArea(parent)
    , m_bar(new QScrollBar(Qt::Vertical, this))
    , m_topFade(new ScrollFade(Qt::TopEdge, this))
    , m_bottomFade(new ScrollFade(Qt::BottomEdge, this))
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // The area's own bar keeps the position; the visible bar takes no room from the page.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    auto* const page = new QWidget;
    page->setAccessibleName(name);
    m_sections = new QVBoxLayout(page);
    m_sections->setSpacing(sectionSpacing);
    setOverhang(0);
    setWidget(page);
    page->setAutoFillBackground(false);

    m_bar->setFocusPolicy(Qt::NoFocus);
    connect(m_bar, &QScrollBar::valueChanged, verticalScrollBar(), &QScrollBar::setValue);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, m_bar, &QScrollBar::setValue);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ScrollPage::updateFades);
    connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, &ScrollPage::followRange);
    followRange();
}

void ScrollPage::setOverhang(int overhang)
{
    m_sections->setContentsMargins(margin, topMargin - overhang, margin, margin);
}

void ScrollPage::resizeEvent(QResizeEvent* event)
{
    QScrollArea::resizeEvent(event);
    placeBar();
    followRange();
}

void ScrollPage::changeEvent(QEvent* event)
{
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) {
        placeBar();
    }
}

void ScrollPage::followRange()
{
    const QScrollBar& own = *verticalScrollBar();
    m_bar->setSingleStep(own.singleStep());
    m_bar->setPageStep(own.pageStep());
    m_bar->setRange(own.minimum(), own.maximum());
    m_bar->setValue(own.value());
    m_bar->setVisible(own.maximum() > own.minimum());
    updateFades();
}

void ScrollPage::placeBar()
{
    const int extent = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_bar);
    const QRect bar(width() - margin + barGap, 0, extent, height());
    m_bar->setGeometry(QStyle::visualRect(layoutDirection(), rect(), bar));
    m_bar->raise();
}

void ScrollPage::updateFades()
{
    const QScrollBar& own = *verticalScrollBar();
    m_topFade->setGeometry(0, 0, width(), ScrollFade::extent);
    m_bottomFade->setGeometry(0, height() - ScrollFade::extent, width(), ScrollFade::extent);
    m_topFade->setVisible(own.value() > own.minimum());
    m_bottomFade->setVisible(own.value() < own.maximum());
}

} // namespace lapsa
