// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "EditorLine.h"

#include "DurationEditor.h"
#include "PushButton.h"

#include <QStyle>

#include <algorithm>

namespace lapsa {

namespace {

constexpr int leastGap = 16;
constexpr int lineSpacing = 8;

} // namespace

EditorLine::EditorLine(DurationEditor* editor, PushButton* button)
    : m_editor(editor)
    , m_button(button)
{
    addWidget(editor);
    addWidget(button);
}

EditorLine::~EditorLine() = default;

void EditorLine::addItem(QLayoutItem* item)
{
    m_items.emplace_back(item);
}

int EditorLine::count() const
{
    return static_cast<int>(m_items.size());
}

QLayoutItem* EditorLine::itemAt(int index) const
{
    return index >= 0 && index < count() ? m_items.at(static_cast<std::size_t>(index)).get() : nullptr;
}

QLayoutItem* EditorLine::takeAt(int index)
{
    if (itemAt(index) == nullptr) {
        return nullptr;
    }
    QLayoutItem* const item = m_items.at(static_cast<std::size_t>(index)).release();
    m_items.erase(m_items.begin() + index);
    return item;
}

QSize EditorLine::sizeHint() const
{
    const int width = m_editor->sizeHint().width() + leastGap + m_button->sizeHint().width();
    return {width, heightForWidth(width)};
}

QSize EditorLine::minimumSize() const
{
    const int width = std::max(m_editor->sizeHint().width(), m_button->sizeHint().width());
    return {width, m_editor->sizeHint().height()};
}

int EditorLine::heightForWidth(int width) const
{
    const Places places = placesFor(width);
    return places.editor.united(places.button).bottom() + 1;
}

void EditorLine::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    const Places places = placesFor(rect.width());
    const auto onScreen = [&](const QRect& place) {
        return QStyle::visualRect(m_editor->layoutDirection(), rect, place.translated(rect.topLeft()));
    };
    m_editor->setGeometry(onScreen(places.editor));
    m_button->setGeometry(onScreen(places.button));
}

EditorLine::Places EditorLine::placesFor(int width) const
{
    const QSize editor = m_editor->sizeHint();
    const QSize button = m_button->sizeHint();
    const int end = width - button.width();
    if (editor.width() + leastGap > end) {
        return {.editor = QRect({0, 0}, editor), .button = QRect({end, editor.height() + lineSpacing}, button)};
    }
    // Aligned with the steppers' line, not with the middle of the whole editor.
    const int top = std::max(0, m_editor->lineCentre() - button.height() / 2);
    return {.editor = QRect({0, 0}, editor), .button = QRect({end, top}, button)};
}

} // namespace lapsa
