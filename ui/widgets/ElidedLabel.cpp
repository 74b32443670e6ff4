// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"

#include "Painting.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>
#include <QStyle>

#include <cmath>

namespace lapsa {

ElidedLabel::ElidedLabel(const TextStyle& style, ColorRole role, QWidget* parent)
    : QLabel(parent)
    , m_style(style)
    , m_role(role)
{
    setTextFormat(Qt::PlainText);
    setFont(fontFor(style));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ElidedLabel::setText(const QString& text)
{
    const QString line = singleLine(text);
    if (line != QLabel::text()) {
        QLabel::setText(line);
        updateToolTip();
    }
}

void ElidedLabel::setRole(ColorRole role)
{
    if (role != m_role) {
        m_role = role;
        update();
    }
}

void ElidedLabel::setElideMode(Qt::TextElideMode mode)
{
    m_elideMode = mode;
    update();
}

void ElidedLabel::setTabular(bool tabular)
{
    m_tabular = tabular;
    updateGeometry();
    update();
}

QSize ElidedLabel::sizeHint() const
{
    return {static_cast<int>(std::ceil(textWidth(text()))), QFontMetrics(font()).height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, sizeHint().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(painting::enabledColor(*this, themeColor(m_role, palette())));
    if (m_tabular && !text().isRightToLeft() && textWidth(text()) <= width()) {
        const QSize size(static_cast<int>(std::ceil(textWidth(text()))), QFontMetrics(font()).height());
        const QRect place = QStyle::alignedRect(layoutDirection(), alignment(), size, rect());
        tabularText::draw(painter, QPointF(place.left(), place.top() + QFontMetricsF(font()).ascent()), text(), font());
        return;
    }
    const QString shown = QFontMetricsF(font()).elidedText(text(), m_elideMode, width());
    const Qt::Alignment place = QStyle::visualAlignment(layoutDirection(), alignment());
    painter.drawText(rect(), static_cast<int>(place | Qt::AlignAbsolute) | Qt::TextSingleLine, shown);
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setFont(fontFor(m_style));
        updateGeometry();
    }
    return QLabel::event(event);
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    updateToolTip();
}

double ElidedLabel::textWidth(const QString& text) const
{
    return m_tabular ? tabularText::width(text, font()) : QFontMetricsF(font()).horizontalAdvance(text);
}

void ElidedLabel::updateToolTip()
{
    setToolTip(textWidth(text()) > width() ? plainToolTip(text()) : QString());
}

} // namespace lapsa
