// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "ItemWorkSource.h"
#include "LapsaStore.h"

#include <QApplication>

#include <algorithm>
#include <utility>

namespace lapsa {

namespace {

/// Takes the row of an item out of the others; null if none shows it.
template <typename Row>
FileRowView* takeRow(std::vector<Row>& from, const QString& id)
{
    const auto found = std::ranges::find(from, id, [](const Row& row) { return row.view->item().id; });
    if (found == from.end()) {
        return nullptr;
    }
    FileRowView* const view = found->view;
    from.erase(found);
    return view;
}

} // namespace

void FileListView::bindRows()
{
    const Row* const focused = focusedRow();
    const FileRowView* const focusedView = focused != nullptr ? focused->view : nullptr;
    const qsizetype focusedIndex = focused != nullptr ? focused->index : 0;
    const std::vector<qsizetype> wanted = wantedIndexes();

    std::vector<Row> before = std::exchange(m_rows, {});
    assignRows(wanted, before);
    const bool focusGone = focusedView != nullptr && std::ranges::find(before, focusedView, &Row::view) != before.end();
    if (focusGone) {
        QApplication::focusWidget()->clearFocus();
    }
    replaceCurrent(before);
    for (const Row& row : before) {
        row.view->hide();
        m_spare.push_back(row);
    }

    const QList<LapsaItem>& items = m_filter.items();
    for (const Row& row : m_rows) {
        row.view->setItem(items[row.index]);
        row.view->setWork(m_rowEnvironment.work.workOn(items[row.index].id));
        row.view->setNow(m_now);
        row.view->setSelected(m_selection.ids().contains(items[row.index].id));
        place(row);
    }
    showLight();
    updateFades();
    m_anchorIndex = m_bar->value() / pitch();
    m_anchorId = m_anchorIndex < items.size() ? items[m_anchorIndex].id : QString();
    if (focusGone) {
        // To the row, not to its button: another key press must not act on the next item.
        moveCurrent(focusedIndex, Qt::OtherFocusReason);
    }
    updateTabStops();
}

/// Gives every wanted index a row: the one that already shows its item, else one of the remaining ones.
void FileListView::assignRows(const std::vector<qsizetype>& wanted, std::vector<Row>& from)
{
    std::vector<qsizetype> unbound;
    for (const qsizetype index : wanted) {
        if (FileRowView* const view = takeRow(from, m_filter.items()[index].id)) {
            m_rows.push_back({view, index});
        } else {
            unbound.push_back(index);
        }
    }
    for (const qsizetype index : unbound) {
        m_rows.push_back({spareRow(from), index});
    }
}

/// The indexes that need a row: those on screen, and that of the focused row, wherever it is.
std::vector<qsizetype> FileListView::wantedIndexes() const
{
    std::vector<qsizetype> wanted;
    const qsizetype first = m_bar->value() / pitch();
    const qsizetype end = std::min(count(), (m_bar->value() + std::max(0, height() - 1)) / pitch() + qsizetype(1));
    for (qsizetype index = first; index < end; ++index) {
        wanted.push_back(index);
    }
    if (const Row* const focused = focusedRow()) {
        const qsizetype index = m_filter.indexOf(focused->view->item().id, focused->index);
        if (index >= 0 && (index < first || index >= end)) {
            wanted.push_back(index);
        }
    }
    return wanted;
}

FileRowView* FileListView::spareRow(std::vector<Row>& from)
{
    for (std::vector<Row>* const rows : {&m_spare, &from}) {
        const auto free = std::ranges::find_if(*rows, [](const Row& row) {
            return !row.view->isAncestorOf(QApplication::focusWidget()) && !row.view->hasFocus();
        });
        if (free != rows->end()) {
            FileRowView* const view = free->view;
            rows->erase(free);
            return view;
        }
    }
    auto* const view = new FileRowView(m_rowEnvironment, this);
    connect(view, &FileRowView::timeSheetRequested, this, [this, view] { emit timeSheetRequested({view->item()}); });
    connect(view, &FileRowView::menuFilled, this, &FileListView::addNextAction);
    view->installEventFilter(this);
    for (QWidget* const child : view->findChildren<QWidget*>()) {
        child->installEventFilter(this);
    }
    return view;
}

void FileListView::place(const Row& row)
{
    // A row kept only for its focus lies just outside the view, wherever its place in the list is.
    const qint64 top = qint64(row.index) * pitch() - m_bar->value();
    const int y = static_cast<int>(std::clamp<qint64>(top, qint64{-2} * pitch(), height() + pitch()));
    row.view->setGeometry(0, y, width(), FileRowView::rowHeight());
    row.view->show();
}

/// If the current item is gone, the one in its place becomes current.
void FileListView::replaceCurrent(const std::vector<Row>& unbound)
{
    const auto row = std::ranges::find(unbound, m_currentId, [](const Row& bound) { return bound.view->item().id; });
    if (row != unbound.end() && m_filter.indexOf(m_currentId, row->index) < 0) {
        m_currentId = count() > 0 ? m_filter.items()[std::min(row->index, count() - 1)].id : QString();
    }
}

void FileListView::updateTabStops()
{
    const FileRowView* const current = currentRow();
    for (const Row& row : m_rows) {
        row.view->setTabStop(row.view == current);
    }
}

void FileListView::moveCurrent(qsizetype index, Qt::FocusReason reason)
{
    if (count() == 0) {
        setFocus(reason);
        return;
    }
    const qsizetype target = std::clamp<qsizetype>(index, 0, count() - 1);
    scrollTo(target);
    const auto row = std::ranges::find(m_rows, target, &Row::index);
    if (row != m_rows.end()) {
        row->view->setFocus(reason);
    }
}

void FileListView::scrollTo(qsizetype index)
{
    const qint64 top = qint64(index) * pitch();
    const qint64 bottom = top + FileRowView::rowHeight();
    if (top < m_bar->value()) {
        m_bar->setValue(static_cast<int>(top));
    } else if (bottom > m_bar->value() + height()) {
        m_bar->setValue(static_cast<int>(bottom - height()));
    }
}

} // namespace lapsa
