// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileIconView.h"

#include <QPainter>

#include <utility>

namespace lapsa {

FileIconView::FileIconView(QWidget* parent)
    : QWidget(parent)
{
    setFixedSize(extent, extent);
}

void FileIconView::setIcon(const QIcon& icon)
{
    if (icon.cacheKey() != m_icon.cacheKey()) {
        m_icon = icon;
        update();
    }
}

void FileIconView::setOpacity(double opacity)
{
    if (std::exchange(m_opacity, opacity) != opacity) {
        update();
    }
}

void FileIconView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setOpacity(m_opacity);
    m_icon.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

} // namespace lapsa
