// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryRowLayout.h"

#include "RowLook.h"
#include "TextStyle.h"

#include <QFontMetrics>
#include <QStyle>

#include <algorithm>
#include <cmath>

namespace lapsa {

namespace {

using rowLook::buttonExtent;
using rowLook::buttonSpacing;
using rowLook::padding;
using rowLook::spacing;

/// Before and after the text of a button.
constexpr int buttonPadding = 12;
/// Between the two texts of a line.
constexpr int textSpacing = 12;

int widthOf(const QString& text, const TextStyle& style)
{
    return text.isEmpty() ? 0 : static_cast<int>(std::ceil(tabularText::width(text, fontFor(style))));
}

/// Shares a line between a text that is cut off if need be, and one at its end.
void share(const QRect& line, int endWidth, QRect& start, QRect& end)
{
    end = line;
    end.setLeft(line.right() + 1 - std::min(endWidth, line.width()));
    start = line;
    start.setRight(end.left() - 1 - (endWidth > 0 ? textSpacing : 0));
}

} // namespace

int RecoveryRowLayout::itemHeight()
{
    const int third = rowLook::stacked() ? rowLook::lineSpacing + QFontMetrics(fontFor(calloutText)).height() : 0;
    return rowLook::height() + third + 2 * around;
}

RecoveryRowLayout RecoveryRowLayout::of(const QRect& item, const Content& content, Qt::LayoutDirection direction)
{
    RecoveryRowLayout made;
    made.row = item.adjusted(around, around, -around, -around);
    const bool stacked = rowLook::stacked();
    QRect inside = made.row.adjusted(padding, padding, -padding, -padding);
    QRect buttons = inside;
    if (stacked) {
        buttons.setTop(inside.bottom() + 1 - buttonExtent);
        inside.setBottom(buttons.top() - 1 - spacing);
    }
    int end = buttons.right() + 1;
    const auto take = [&](int width) {
        const QRect place(end - width, buttons.center().y() + 1 - buttonExtent / 2, width, buttonExtent);
        end = place.left() - buttonSpacing;
        return place;
    };
    if (!content.underWay) {
        made.remove = take(buttonExtent);
        made.putBack = take(widthOf(content.putBack, calloutText) + 2 * buttonPadding);
    } else if (content.stoppable) {
        made.stop = take(buttonExtent);
    }
    if (!stacked && end <= buttons.right()) {
        inside.setRight(end + buttonSpacing - 1 - spacing);
    }
    made.placeTexts(inside, content);
    for (QRect* const part :
         {&made.icon, &made.name, &made.size, &made.origin, &made.state, &made.putBack, &made.remove, &made.stop}) {
        *part = part->isNull() ? *part : QStyle::visualRect(direction, made.row, *part);
    }
    return made;
}

void RecoveryRowLayout::placeTexts(const QRect& inside, const Content& content)
{
    const bool stacked = rowLook::stacked();
    icon = QRect(inside.left(), inside.center().y() + 1 - rowLook::iconExtent / 2, rowLook::iconExtent,
                 rowLook::iconExtent);
    const int nameHeight = QFontMetrics(fontFor(headlineText)).height();
    const int stateHeight = QFontMetrics(fontFor(calloutText)).height();
    const int pitch = stateHeight + rowLook::lineSpacing;
    const int top = inside.top() + (inside.height() - nameHeight - pitch * (stacked ? 2 : 1)) / 2;
    const int left = icon.right() + 1 + spacing;
    const int width = inside.right() + 1 - left;
    const QRect second(left, top + nameHeight + rowLook::lineSpacing, width, stateHeight);
    share({left, top, width, nameHeight}, widthOf(content.size, calloutText), name, size);
    if (stacked) {
        origin = second;
        state = second.translated(0, pitch);
    } else {
        share(second, widthOf(content.state, calloutText), origin, state);
    }
}

RecoveryRowLayout::Button RecoveryRowLayout::buttonAt(const QPoint& point) const
{
    for (const Button button : {Button::PutBack, Button::Delete, Button::Stop}) {
        if (rectOf(button).contains(point)) {
            return button;
        }
    }
    return Button::None;
}

QRect RecoveryRowLayout::rectOf(Button button) const
{
    switch (button) {
    case Button::PutBack:
        return putBack;
    case Button::Delete:
        return remove;
    case Button::Stop:
        return stop;
    case Button::None:
        break;
    }
    return {};
}

} // namespace lapsa
