// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListSelection.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lapsa {

void ListSelection::toggle(const QString& id)
{
    m_anchor = id;
    if (!m_ids.remove(id)) {
        m_ids.insert(id);
    }
}

void ListSelection::extendTo(const QList<LapsaItem>& items, qsizetype index)
{
    const auto anchor = std::ranges::find(items, m_anchor, &LapsaItem::id);
    const qsizetype from = anchor != items.end() ? anchor - items.begin() : index;
    m_anchor = items[from].id;
    m_ids.clear();
    for (qsizetype selected = std::min(from, index); selected <= std::max(from, index); ++selected) {
        m_ids.insert(items[selected].id);
    }
}

void ListSelection::selectAll(const QList<LapsaItem>& items)
{
    m_ids.clear();
    m_ids.reserve(items.size());
    for (const LapsaItem& item : items) {
        m_ids.insert(item.id);
    }
}

void ListSelection::keepOnly(const QList<LapsaItem>& items)
{
    if (m_ids.isEmpty()) {
        return;
    }
    QSet<QString> kept;
    for (const LapsaItem& item : items) {
        if (m_ids.contains(item.id)) {
            kept.insert(item.id);
        }
    }
    m_ids = std::move(kept);
}

QList<LapsaItem> ListSelection::of(const QList<LapsaItem>& items) const
{
    QList<LapsaItem> selected;
    std::ranges::copy_if(items, std::back_inserter(selected),
                         [this](const LapsaItem& item) { return m_ids.contains(item.id); });
    return selected;
}

} // namespace lapsa
