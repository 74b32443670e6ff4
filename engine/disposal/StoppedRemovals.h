// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ItemWork.h"
#include "LapsaItem.h"
#include "Time.h"

#include <QHash>
#include <QString>

#include <cstdint>
#include <optional>

namespace lapsa {

/// Folders that were being removed for good until the user wanted them to stay, and how much of each is left. This is
/// worth telling until the user decides again: gives the item more time, locks it or unlocks it.
class StoppedRemovals final
{
public:
    [[nodiscard]] bool contains(const QString& id) const { return m_stopped.contains(id); }

    /// Nothing if the item was changed since.
    [[nodiscard]] std::optional<ItemWork> find(const LapsaItem& item) const;

    /// `filesLeft` is negative if it is not known.
    void add(const LapsaItem& item, std::int64_t filesLeft);

    void remove(const QString& id) { m_stopped.remove(id); }

private:
    struct Stopped
    {
        TimePoint expiresAt;
        bool locked = false;
        std::int64_t filesLeft = 0;
    };

    QHash<QString, Stopped> m_stopped;
};

} // namespace lapsa
