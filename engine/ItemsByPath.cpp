// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ItemsByPath.h"

#include "ShortTurn.h"

#include <algorithm>

namespace lapsa {

bool ItemsByPath::readOn(const QList<LapsaItem>& items, std::uint64_t removals)
{
    constexpr ShortTurn::Bounds bounds{.atLeast = 5000, .atMost = 20'000};
    if (!m_indexed) {
        return true;
    }
    if (m_removals != removals) {
        m_removals = removals;
        m_positions.clear();
        m_read = 0;
    }
    if (m_read == 0) {
        m_positions.reserve(items.size() + m_expected); // to grow it takes longer than a turn may
    }
    for (ShortTurn turn(bounds); m_read < items.size() && !turn.isOver(); ++m_read) {
        const qsizetype known = m_positions.size();
        qsizetype& position = m_positions[items[m_read].path];
        if (m_positions.size() > known) { // the first of several equal paths wins
            position = m_read;
        }
    }
    return m_read == items.size();
}

qsizetype ItemsByPath::find(const QList<LapsaItem>& items, const QString& path) const
{
    if (m_indexed) {
        return m_positions.value(path, -1);
    }
    const auto found = std::ranges::find(items, path, &LapsaItem::path);
    return found == items.cend() ? -1 : found - items.cbegin();
}

} // namespace lapsa
