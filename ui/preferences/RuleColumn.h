// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QList>
#include <QUuid>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>

namespace lapsa::ruleColumn {

/// Removes a view from its column. Deletes it on a later turn of the event loop, because it may be handling a click
/// now.
inline void discard(QWidget* view, QVBoxLayout& column, QWidget& focusAfter)
{
    const bool focused = view->isAncestorOf(QApplication::focusWidget());
    column.removeWidget(view);
    view->hide();
    view->deleteLater();
    if (focused) {
        // Not the next view's remove button: a second key press must not remove that one too.
        focusAfter.setFocus(Qt::OtherFocusReason);
    }
}

/// Updates the views to match the rules and their order: a view stays as long as its rule, with its hover, its focus
/// and the text being typed. `make(id)` creates a new view. The views are in `column` in the same order, with nothing
/// before them.
template <typename View, typename Rule, typename Make>
void bringInLine(QList<View*>& views, const QList<Rule>& rules, QVBoxLayout& column, QWidget& focusAfter,
                 const Make& make)
{
    for (qsizetype index = 0; index < rules.size(); ++index) {
        const QUuid& id = rules.at(index).id;
        const auto known =
            std::find_if(views.begin() + index, views.end(), [&id](const View* view) { return view->id() == id; });
        if (known == views.end()) {
            views.insert(index, make(id));
            column.insertWidget(static_cast<int>(index), views.at(index));
            // Now, not later as the layout would: the view must have its place before anything is painted.
            views.at(index)->show();
        } else if (known != views.begin() + index) {
            views.move(known - views.begin(), index);
            column.removeWidget(views.at(index));
            column.insertWidget(static_cast<int>(index), views.at(index));
        }
    }
    while (views.size() > rules.size()) {
        discard(views.takeLast(), column, focusAfter);
    }
    for (View* const view : views) {
        view->refresh();
    }
}

} // namespace lapsa::ruleColumn
