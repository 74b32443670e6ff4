// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileRowView.h"
#include "LapsaStore.h"
#include "Localized.h"

namespace lapsa {

using namespace Qt::StringLiterals;

void FileRowView::deleteNow()
{
    // The row may be gone by then, but not the store.
    LapsaStore& store = m_environment.store;
    m_environment.store.deleteNow(m_item, [&store, name = m_item.displayName](LapsaStore::DeleteOutcome outcome) {
        if (outcome == LapsaStore::DeleteOutcome::HoldsLockedItem) {
            store.setLastMessage(
                Localized::text(u"“%1” holds a locked file."_s, u"“%1” contiene un file bloccato."_s).arg(name));
        }
    });
}

} // namespace lapsa
