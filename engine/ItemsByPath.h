// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"

#include <QHash>
#include <QList>
#include <QString>

#include <cstdint>

namespace lapsa {

/// Finds the first item of a list with a path, over several turns of the main loop. A table is built only for several
/// look-ups; for one it does not pay.
class ItemsByPath final
{
public:
    explicit ItemsByPath(qsizetype expectedLookUps)
        : m_indexed(expectedLookUps > 1)
        , m_expected(expectedLookUps)
    {}

    /// Reads on in the list, so much that a turn stays short, and returns whether all of it has been read; until then,
    /// find() may not be asked. `removals` counts how often items have left the list: after that it is read anew.
    [[nodiscard]] bool readOn(const QList<LapsaItem>& items, std::uint64_t removals);

    /// The position of the first item with that path, or -1.
    [[nodiscard]] qsizetype find(const QList<LapsaItem>& items, const QString& path) const;

    /// An item with that path, which find() has not found, is now the last of the list.
    void added(const QString& path, qsizetype position)
    {
        if (m_indexed) {
            m_positions.insert(path, position);
            m_read = position + 1;
        }
    }

private:
    bool m_indexed;
    qsizetype m_expected;
    qsizetype m_read = 0;
    std::uint64_t m_removals = 0;
    QHash<QString, qsizetype> m_positions;
};

} // namespace lapsa
