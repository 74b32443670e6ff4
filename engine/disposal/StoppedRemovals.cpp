// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoppedRemovals.h"

namespace lapsa {

std::optional<ItemWork> StoppedRemovals::find(const LapsaItem& item) const
{
    const auto found = m_stopped.constFind(item.id);
    if (found == m_stopped.cend() || found->expiresAt != item.expiresAt || found->locked != item.locked) {
        return std::nullopt;
    }
    return ItemWork{.kind = ItemWork::Kind::Stopped, .done = found->filesLeft};
}

void StoppedRemovals::add(const LapsaItem& item, std::int64_t filesLeft)
{
    m_stopped.insert(item.id, {.expiresAt = item.expiresAt, .locked = item.locked, .filesLeft = filesLeft});
}

} // namespace lapsa
