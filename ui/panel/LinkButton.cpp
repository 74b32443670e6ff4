// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LinkButton.h"

#include "FocusRing.h"
#include "Painting.h"
#include "TextStyle.h"
#include "ThemePalette.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>

namespace lapsa {

namespace {

constexpr int focusRadius = 4;
constexpr int padding = 2;

} // namespace

LinkButton::LinkButton(const QString& text, QWidget* parent)
    : HoverButton(parent)
{
    setText(text);
    setAccessibleName(text);
    setFont(fontFor(captionText));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusRadius(*this, focusRadius);
}

QSize LinkButton::sizeHint() const
{
    const QFontMetrics metrics(font());
    return {metrics.horizontalAdvance(text()) + 2 * padding, metrics.lineSpacing()};
}

void LinkButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QFont shown = font();
    shown.setUnderline(hoverProgress() > 0 || isDown());
    painter.setFont(shown);
    painter.setPen(painting::enabledColor(*this, themeColor(ColorRole::Accent, palette())));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
}

bool LinkButton::event(QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange) {
        setFont(fontFor(captionText));
        updateGeometry();
    }
    return HoverButton::event(event);
}

} // namespace lapsa
