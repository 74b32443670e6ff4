// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "LapsaStore.h"
#include "ScrollFade.h"
#include "Spotlight.h"

#include <algorithm>

namespace lapsa {

void FileListView::reveal(const QStringList& ids)
{
    setFilter({}); // it may hide them
    const QSet<QString> wanted(ids.begin(), ids.end());
    const QList<LapsaItem>& items = m_filter.items();
    qsizetype first = -1;
    qsizetype last = -1;
    // From the end, where the new items are: the others need not be searched.
    for (qsizetype index = items.size() - 1, left = wanted.size(); index >= 0 && left > 0; --index) {
        if (wanted.contains(items[index].id)) {
            last = std::max(index, last);
            first = index;
            --left;
        }
    }
    if (first < 0) {
        return;
    }
    if (focusedRow() == nullptr) {
        m_currentId = items[first].id; // the keyboard continues from there
    }
    scrollToBlock(first, last);
    m_spotlight->light(wanted);
    updateTabStops();
}

/// Scrolls the block to the middle, so that its neighbours show where it is; a block that is too tall shows its upper
/// end. Does not scroll if all its rows are visible.
void FileListView::scrollToBlock(qsizetype first, qsizetype last)
{
    const qint64 top = qint64(first) * pitch();
    const qint64 bottom = qint64(last) * pitch() + FileRowView::rowHeight();
    if (top >= m_bar->value() && bottom <= m_bar->value() + height()) {
        return;
    }
    const qint64 above = std::max<qint64>((height() - (bottom - top)) / 2, ScrollFade::extent);
    m_bar->setValue(static_cast<int>(std::clamp<qint64>(top - above, 0, m_bar->maximum())));
}

void FileListView::showLight()
{
    for (const Row& row : m_rows) {
        row.view->setLight(m_spotlight->strengthOf(row.view->item().id));
    }
}

} // namespace lapsa
