// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "ItemTimeView.h"
#include "LapsaPanelView.h"
#include "LapsaStore.h"
#include "Sheet.h"

#include <algorithm>

namespace lapsa {

void LapsaPanelView::showTimeSheet(const QList<LapsaItem>& items)
{
    if (m_sheet != nullptr) {
        return;
    }
    auto* const view = new ItemTimeView(items, m_environment.store, m_environment.clock, this);
    m_sheetItemIds.clear();
    for (const LapsaItem& item : items) {
        m_sheetItemIds.push_back(item.id);
    }
    m_sheet = new Sheet(*this, view);
    connect(view, &ItemTimeView::dismissRequested, m_sheet, &Sheet::dismiss);
    connect(m_sheet, &Sheet::dismissed, this, [this] {
        m_sheet = nullptr;
        m_list->focusRow(m_sheetItemIds.constFirst());
    });
}

/// The sheet belongs to its rows: it closes when the last of their items is gone.
void LapsaPanelView::dismissSheetOfVanishedItem()
{
    if (m_sheet == nullptr) {
        return;
    }
    const QSet<QString> ids(m_sheetItemIds.cbegin(), m_sheetItemIds.cend());
    if (std::ranges::none_of(m_environment.store.items(),
                             [&ids](const LapsaItem& item) { return ids.contains(item.id); })) {
        m_sheet->dismiss();
    }
}

} // namespace lapsa
