// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Clock.h"
#include "LapsaStore.h"

#include <algorithm>

namespace lapsa {

void LapsaStore::lockItems(const QSet<QString>& ids)
{
    changeItems(ids, [](LapsaItem& item) { item.locked = true; });
    keepWhatIsLocked(ids);
}

void LapsaStore::unlockItems(const QSet<QString>& ids)
{
    changeItems(ids, [](LapsaItem& item) { item.locked = false; });
}

void LapsaStore::updateExpirations(const QSet<QString>& ids, std::int64_t minutes)
{
    m_disposals.stop(ids);
    const TimePoint end = addingMinutes(m_environment.clock.now(), std::max<std::int64_t>(minutes, 1));
    changeItems(ids, [end](LapsaItem& item) {
        item.expiresAt = end;
        item.fiveMinuteWarningSent = false;
    });
}

void LapsaStore::removeItemsFromList(const QSet<QString>& ids)
{
    const auto isMeant = [&ids](const LapsaItem& item) { return ids.contains(item.id); };
    if (std::ranges::none_of(m_items, isMeant)) {
        return;
    }
    m_disposals.stop(ids);
    emit willChange();
    m_items.removeIf(isMeant);
    saveSoon();
}

} // namespace lapsa
