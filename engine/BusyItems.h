// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaItem.h"
#include "Time.h"

#include <QHash>
#include <QString>

namespace lapsa {

/// Items that are due, but whose files were being written to when they were to be copied to another file system.
class BusyItems final
{
public:
    /// How much work the attempt had cost when it was given up.
    enum class Cost
    {
        Little,
        /// Much was copied for nothing.
        Copy,
    };

    [[nodiscard]] bool contains(const QString& id) const { return m_items.contains(id); }

    /// Whether a pass skips the item for now: after a wasted copy, for as long as it has been in use so far, at most an
    /// hour. False if its expiry was changed since.
    [[nodiscard]] bool rests(const LapsaItem& item, TimePoint now) const;

    void add(const LapsaItem& item, Cost cost, TimePoint now);

    void remove(const QString& id) { m_items.remove(id); }

private:
    struct Busy
    {
        TimePoint expiresAt;
        TimePoint since;
        TimePoint restsUntil;
    };

    QHash<QString, Busy> m_items;
};

} // namespace lapsa
