// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListFilter.h"

#include "LapsaStore.h"

#include <algorithm>
#include <iterator>

namespace lapsa {

ListFilter::ListFilter(const LapsaStore& store)
    : m_store(store)
{}

void ListFilter::setText(const QString& text)
{
    m_text = text;
    refresh();
}

void ListFilter::refresh()
{
    m_hits.clear();
    if (!m_text.isEmpty()) {
        std::ranges::copy_if(m_store.items(), std::back_inserter(m_hits), [this](const LapsaItem& item) {
            return item.displayName.contains(m_text, Qt::CaseInsensitive);
        });
    }
}

const QList<LapsaItem>& ListFilter::items() const
{
    return m_text.isEmpty() ? m_store.items() : m_hits;
}

qsizetype ListFilter::indexOf(const QString& id, qsizetype hint) const
{
    const QList<LapsaItem>& shown = items();
    if (hint < shown.size() && shown[hint].id == id) {
        return hint;
    }
    const auto found = std::ranges::find(shown, id, &LapsaItem::id);
    return found != shown.end() ? found - shown.begin() : -1;
}

} // namespace lapsa
