// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryDelegate.h"
#include "RecoveryListView.h"
#include "RecoveryModel.h"

#include <QContextMenuEvent>
#include <QKeyEvent>

namespace lapsa {

using Button = RecoveryRowLayout::Button;

namespace {

/// A letter or a digit, without a key that makes it a command.
bool isText(const QKeyEvent& event)
{
    const bool command = (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0;
    return !command && !event.text().isEmpty() && event.text().at(0).isPrint() && event.text() != u" ";
}

} // namespace

void RecoveryListView::keyPressEvent(QKeyEvent* event)
{
    showRing(true);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Delete: {
        QList<int> rows = selectedRows();
        if (rows.isEmpty() && currentIndex().isValid()) {
            rows.push_back(currentIndex().row());
        }
        if (!rows.isEmpty() && !event->isAutoRepeat()) {
            emit pressed(event->key() == Qt::Key_Delete ? Button::Delete : Button::PutBack, rows);
        }
        return;
    }
    case Qt::Key_Up:
    case Qt::Key_Down:
        // The first of these selects the current row, and lets a screen reader tell which one that is.
        if (selectionModel()->selection().isEmpty() && m_model.rowCount() > 0) {
            const QModelIndex index = currentIndex().isValid() ? currentIndex() : m_model.index(0);
            selectionModel()->clearCurrentIndex();
            setCurrentIndex(index);
            return;
        }
        break;
    default:
        break;
    }
    if (isText(*event)) {
        emit typed(event->text());
        return;
    }
    QListView::keyPressEvent(event);
}

void RecoveryListView::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    if (selectedRows().isEmpty()) {
        return;
    }
    const QRect row = visualRect(currentIndex());
    emit menuRequested(byKeyboard && row.isValid() ? viewport()->mapToGlobal(row.center()) : event->globalPos());
}

void RecoveryListView::focusInEvent(QFocusEvent* event)
{
    QListView::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    showRing(reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason);
}

void RecoveryListView::showRing(bool shown)
{
    m_delegate->setRingShown(shown);
    viewport()->update();
}

} // namespace lapsa
