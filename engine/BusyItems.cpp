// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BusyItems.h"

#include <algorithm>
#include <chrono>

namespace lapsa {

bool BusyItems::rests(const LapsaItem& item, TimePoint now) const
{
    const auto found = m_items.constFind(item.id);
    // If the clock was set back, nothing is delayed.
    return found != m_items.cend() && found->expiresAt == item.expiresAt && found->since <= now &&
           now < found->restsUntil;
}

void BusyItems::add(const LapsaItem& item, Cost cost, TimePoint now)
{
    constexpr TimePoint::duration longestRest = std::chrono::hours(1);
    const auto known = m_items.constFind(item.id);
    const bool goesOn = known != m_items.cend() && known->expiresAt == item.expiresAt && known->since <= now;
    const TimePoint since = goesOn ? known->since : now;
    const TimePoint restsUntil = cost == Cost::Copy ? now + std::min(now - since, longestRest) : now;
    m_items.insert(item.id, {.expiresAt = item.expiresAt, .since = since, .restsUntil = restsUntil});
}

} // namespace lapsa
