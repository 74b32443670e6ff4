// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ScrollFade.h"

#include "Material.h"
#include "ThemePalette.h"

#include <QLinearGradient>
#include <QPainter>

namespace lapsa {

ScrollFade::ScrollFade(Qt::Edge edge, QWidget* parent)
    : QWidget(parent)
    , m_edge(edge)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ScrollFade::paintEvent(QPaintEvent*)
{
    const double height = double(mapTo(window(), rect().center()).y()) / window()->height();
    const QColor ground = material::windowColorAt(height, palette());
    QLinearGradient gradient(rect().topLeft(), rect().bottomLeft());
    gradient.setColorAt(m_edge == Qt::TopEdge ? 0 : 1, ground);
    gradient.setColorAt(m_edge == Qt::TopEdge ? 1 : 0, withOpacity(ground, 0));
    QPainter(this).fillRect(rect(), gradient);
}

} // namespace lapsa
