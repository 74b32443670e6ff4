// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DeletionUndo.h"
#include "FileRowView.h"
#include "LapsaStore.h"
#include "Localized.h"

#include <QPointer>

namespace lapsa {

using namespace Qt::StringLiterals;

void FileRowView::deleteNow()
{
    // The row may be gone by then, but not the store.
    LapsaStore& store = m_environment.store;
    store.deleteNow(m_item, [&store, undo = QPointer(&m_environment.undo)](const LapsaStore::Deletion& deletion) {
        if (deletion.outcome == LapsaStore::DeleteOutcome::HoldsLockedItem) {
            store.setLastMessage(Localized::text(u"“%1” holds a locked file."_s, u"“%1” contiene un file bloccato."_s)
                                     .arg(deletion.item.displayName));
        } else if (undo) {
            undo->offer(deletion);
        }
    });
}

} // namespace lapsa
