// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TextLabel.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace lapsa {

namespace {

/// Higher than any text, but within the range of text layout.
constexpr int unlimited = 1 << 20;

} // namespace

TextLabel::TextLabel(const QString& text, const TextStyle& style, ColorRole role, QWidget* parent)
    : QLabel(text, parent)
    , m_style(style)
{
    setTextFormat(Qt::PlainText);
    setForegroundRole(paletteRole(role));
    setFont(fontFor(style));
    setWordWrap(true);
}

void TextLabel::setStyle(const TextStyle& style)
{
    m_style = style;
    setFont(fontFor(style));
}

void TextLabel::setRole(ColorRole role)
{
    setForegroundRole(paletteRole(role));
}

void TextLabel::setMaximumLines(int lines)
{
    m_maximumLines = lines;
    updateGeometry();
    update();
}

void TextLabel::setTabular(int leastWidth)
{
    m_tabular = true;
    m_leastWidth = leastWidth;
    setWordWrap(false);
    updateGeometry();
    update();
}

QSize TextLabel::sizeHint() const
{
    const QMargins margins = contentsMargins();
    if (!m_tabular) {
        const int width = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(text())));
        return QSize(width, lineHeight()).grownBy(margins);
    }
    const int width = static_cast<int>(std::ceil(tabularText::width(text(), font())));
    return QSize(std::max(width, m_leastWidth), lineHeight()).grownBy(margins);
}

QSize TextLabel::minimumSizeHint() const
{
    return m_tabular ? sizeHint() : QSize(0, lineHeight()).grownBy(contentsMargins());
}

int TextLabel::heightForWidth(int width) const
{
    const QMargins margins = contentsMargins();
    const int around = margins.top() + margins.bottom();
    if (m_tabular) {
        return lineHeight() + around;
    }
    const int height = boundsFor(width - margins.left() - margins.right()).height();
    return (m_maximumLines > 0 ? std::min(height, m_maximumLines * lineHeight()) : height) + around;
}

void TextLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(palette().color(foregroundRole()));
    const Qt::Alignment place = QStyle::visualAlignment(layoutDirection(), alignment());
    if (m_tabular) {
        const QSize size(static_cast<int>(std::ceil(tabularText::width(text(), font()))), lineHeight());
        const QRect line = QStyle::alignedRect(Qt::LeftToRight, place, size, contentsRect());
        tabularText::draw(painter, QPointF(line.left(), line.top() + QFontMetricsF(font()).ascent()), text(), font());
        return;
    }
    QString shown = text();
    if (m_maximumLines > 0) {
        shown = shortened(shown);
    }
    QRect lines = contentsRect();
    if (place.testFlag(Qt::AlignHCenter)) {
        const int width = balancedWidth(lines.width());
        lines.adjust((lines.width() - width) / 2, 0, -(lines.width() - width) / 2, 0);
    }
    painter.drawText(lines, static_cast<int>(place | Qt::AlignAbsolute) | Qt::TextWordWrap, shown);
}

bool TextLabel::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setFont(fontFor(m_style));
        updateGeometry();
    }
    return QLabel::event(event);
}

int TextLabel::lineHeight() const
{
    return QFontMetrics(font()).lineSpacing();
}

QRect TextLabel::boundsFor(int width) const
{
    return QFontMetrics(font()).boundingRect(QRect(0, 0, width, unlimited), Qt::TextWordWrap, text());
}

int TextLabel::balancedWidth(int width) const
{
    const int height = boundsFor(width).height();
    int tooNarrow = 0;
    int wideEnough = width;
    while (wideEnough - tooNarrow > 1) {
        const int middle = (tooNarrow + wideEnough) / 2;
        const QRect bounds = boundsFor(middle);
        (bounds.height() <= height && bounds.width() <= middle ? wideEnough : tooNarrow) = middle;
    }
    return wideEnough;
}

QString TextLabel::shortened(const QString& text) const
{
    QTextLayout layout(text, font());
    layout.beginLayout();
    for (int line = 0; line < m_maximumLines; ++line) {
        QTextLine next = layout.createLine();
        if (!next.isValid()) {
            break;
        }
        next.setLineWidth(contentsRect().width());
    }
    layout.endLayout();
    const QTextLine last = layout.lineAt(layout.lineCount() - 1);
    if (layout.lineCount() < m_maximumLines || last.textStart() + last.textLength() >= text.size()) {
        return text;
    }
    return text.first(last.textStart()) +
           QFontMetrics(font()).elidedText(text.sliced(last.textStart()), Qt::ElideRight, contentsRect().width());
}

} // namespace lapsa
