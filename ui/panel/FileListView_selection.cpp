// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView_selection.h"

#include "FileRowView.h"
#include "LapsaStore.h"
#include "Localized.h"
#include "TextStyle.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

void FileListView::setFilter(const QString& text)
{
    if (text == m_filter.text()) {
        return;
    }
    m_filter.setText(text);
    m_bar->setValue(0);
    refresh();
}

void FileListView::clearSelection()
{
    if (!m_selection.ids().isEmpty()) {
        m_selection.clear();
        showSelection();
    }
}

const QSet<QString>& FileListView::selectedIds() const
{
    return m_selection.ids();
}

/// The row's buttons act on their row only, and leave the selection as it is.
void FileListView::Selecting::press(FileListView& list, const FileRowView& row, const QMouseEvent& event)
{
    const QString id = row.item().id;
    if (event.button() == Qt::LeftButton && event.modifiers().testFlag(Qt::ControlModifier)) {
        list.m_selection.toggle(id);
    } else if (event.button() == Qt::LeftButton && event.modifiers().testFlag(Qt::ShiftModifier)) {
        list.m_selection.extendTo(list.m_filter.items(), std::max<qsizetype>(list.m_filter.indexOf(id, 0), 0));
    } else if (event.button() == Qt::LeftButton || !list.m_selection.ids().contains(id)) {
        list.m_selection.setAnchor(id);
        list.clearSelection();
        return;
    } else {
        return;
    }
    list.showSelection();
}

bool FileListView::Selecting::byKey(FileListView& list, const QKeyEvent& event)
{
    const Row* const focused = list.focusedRow();
    if (event.matches(QKeySequence::SelectAll)) {
        list.m_selection.selectAll(list.m_filter.items());
    } else if (event.key() == Qt::Key_Space && event.modifiers() == Qt::ControlModifier && focused != nullptr) {
        list.m_selection.toggle(focused->view->item().id);
    } else if (event.key() == Qt::Key_Escape && !list.m_selection.ids().isEmpty()) {
        list.m_selection.clear();
    } else {
        return false;
    }
    list.showSelection();
    return true;
}

/// Shift selects on the way, Ctrl keeps what is selected; a plain arrow drops it.
void FileListView::Selecting::goTo(FileListView& list, qsizetype index, Qt::KeyboardModifiers modifiers)
{
    if (list.count() > 0) {
        const QList<LapsaItem>& items = list.m_filter.items();
        const qsizetype target = std::clamp<qsizetype>(index, 0, list.count() - 1);
        if (modifiers.testFlag(Qt::ShiftModifier)) {
            if (const Row* const focused = list.focusedRow(); focused != nullptr && list.m_selection.ids().isEmpty()) {
                list.m_selection.setAnchor(focused->view->item().id);
            }
            list.m_selection.extendTo(items, target);
            list.showSelection();
        } else if (!modifiers.testFlag(Qt::ControlModifier)) {
            list.m_selection.setAnchor(items[target].id);
            list.clearSelection();
        }
    }
    list.moveCurrent(index, Qt::TabFocusReason);
}

void FileListView::showSelection()
{
    for (const Row& row : m_rows) {
        row.view->setSelected(m_selection.ids().contains(row.view->item().id));
    }
    emit selectionChanged(m_selection.ids().size());
}

void FileListView::Selecting::openMenu(FileListView& list, const QContextMenuEvent& event)
{
    auto* const menu = new QMenu(&list);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setFont(fontFor(bodyText));
    list.fillSelectionMenu(*menu);
    menu->popup(event.globalPos());
}

void FileListView::fillSelectionMenu(QMenu& menu)
{
    const QList<LapsaItem> selected = m_selection.of(m_filter.items());
    const QSet<QString> ids = m_selection.ids();
    const QString number = Localized::number(selected.size());
    LapsaStore& store = m_rowEnvironment.store;
    connect(
        menu.addAction(Localized::text(u"Change timer of %1 items"_s, u"Cambia scadenza di %1 elementi"_s).arg(number)),
        &QAction::triggered, this, [this, selected] { emit timeSheetRequested(selected); });
    if (!std::ranges::all_of(selected, &LapsaItem::locked)) {
        connect(menu.addAction(Localized::text(u"Lock %1 items"_s, u"Blocca %1 elementi"_s).arg(number)),
                &QAction::triggered, &store, [&store, ids] { store.lockItems(ids); });
    }
    if (std::ranges::any_of(selected, &LapsaItem::locked)) {
        connect(menu.addAction(Localized::text(u"Unlock %1 items"_s, u"Sblocca %1 elementi"_s).arg(number)),
                &QAction::triggered, &store, [&store, ids] { store.unlockItems(ids); });
    }
    connect(menu.addAction(
                Localized::text(u"Remove %1 items from list"_s, u"Rimuovi %1 elementi dalla lista"_s).arg(number)),
            &QAction::triggered, &store, [&store, ids] { store.removeItemsFromList(ids); });
    addNextAction(menu);
}

/// What is locked never goes.
void FileListView::addNextAction(QMenu& menu)
{
    const QList<LapsaItem>& items = m_filter.items();
    const auto next = std::ranges::min_element(items, [](const LapsaItem& one, const LapsaItem& other) {
        return one.locked != other.locked ? other.locked : one.expiresAt < other.expiresAt;
    });
    if (next == items.end() || next->locked) {
        return;
    }
    menu.addSeparator();
    connect(menu.addAction(Localized::text(u"Go to what expires next"_s, u"Vai al prossimo in scadenza"_s)),
            &QAction::triggered, this, [this, id = next->id] {
                const qsizetype index = m_filter.indexOf(id, 0);
                if (index >= 0) {
                    moveCurrent(index, Qt::OtherFocusReason);
                    reveal({id});
                }
            });
}

} // namespace lapsa
