// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileRowView.h"
#include "LapsaStore.h"
#include "Localized.h"

namespace lapsa {

using namespace Qt::StringLiterals;

void FileRowView::deleteNow()
{
    if (m_store.deleteNow(m_item) == LapsaStore::DeleteOutcome::HoldsLockedItem) {
        m_store.setLastMessage(Localized::text(u"“%1” holds a locked file."_s, u"“%1” contiene un file bloccato."_s)
                                   .arg(m_item.displayName));
    }
}

} // namespace lapsa
