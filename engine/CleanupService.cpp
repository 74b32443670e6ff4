// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CleanupService.h"

#include "Clock.h"
#include "ExpiryWarnings.h"
#include "Freeing.h"
#include "LapsaStore.h"
#include "MainQueue.h"
#include "RememberedItems.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace lapsa {

namespace {

constexpr std::chrono::seconds passInterval{60};
/// Per pass. The remaining items share one warning; otherwise hundreds would cover the screen.
constexpr qsizetype mostSingleWarnings = 10;

} // namespace

CleanupService::CleanupService(LapsaStore& store, ExpiryWarnings& notificationService, const Environment& environment)
    : m_store(&store)
    , m_notificationService(notificationService)
    , m_environment(environment)
{}

CleanupService::~CleanupService() = default;

void CleanupService::start()
{
    stop();
    m_timer = m_environment.mainQueue.repeatEvery(passInterval, [service = QPointer(this)] {
        service->m_environment.mainQueue.async([service] {
            if (service) {
                service->tick();
            }
        });
    });
    tick();
}

void CleanupService::stop()
{
    m_timer.reset();
}

void CleanupService::tick()
{
    if (!m_store) {
        return;
    }
    LapsaStore& store = *m_store;
    // Before the check for the pause, on purpose: the scan checks it itself.
    store.scanAutoCleanFolders();
    if (store.settings().pauseAllCountdowns) {
        return;
    }
    if (store.settings().enableExpiryNotifications) {
        sendDueWarnings(store);
    }
    store.deleteExpiredItems();
}

void CleanupService::sendDueWarnings(LapsaStore& store)
{
    const std::int64_t leadMinutes = store.settings().notifyBeforeMinutes;
    const TimePoint now = m_environment.clock.now();
    QList<LapsaItem> due;
    for (const LapsaItem& item : store.items()) {
        const double remaining = secondsBetween(now, item.expiresAt);
        const bool isDue = remaining > 0 && remaining <= static_cast<double>(leadMinutes) * secondsPerMinute;
        if (isDue && !item.locked && !item.fiveMinuteWarningSent) {
            due.push_back(item);
        }
    }
    if (due.isEmpty()) {
        return;
    }
    // An item that a lock holds back will not be disposed of, so it gets no warning.
    store.findFree(due, [this, alive = QPointer(this), leadMinutes](const QList<LapsaItem>& free) {
        const auto warnOfThem = [this, alive, free, leadMinutes] {
            if (alive && m_store) {
                warn(free, leadMinutes);
            }
        };
        if (free.size() <= soonFreed) {
            warnOfThem();
        } else if (alive) {
            m_environment.mainQueue.async(warnOfThem); // this turn of the main loop was long enough
        }
    });
}

void CleanupService::warn(const QList<LapsaItem>& items, std::int64_t leadMinutes)
{
    const QList<LapsaItem>& list = m_store->items();
    const std::vector<qsizetype> askedAt = positionsOfRemembered(list, items);
    QList<LapsaItem> warned;
    warned.reserve(items.size());
    for (qsizetype position = 0; position < list.size(); ++position) {
        const qsizetype asked = askedAt[std::size_t(position)];
        const LapsaItem& item = list[position];
        // The user may have changed the item while the disk was asked.
        if (asked >= 0 && items[asked].expiresAt == item.expiresAt && !item.locked && !item.fiveMinuteWarningSent) {
            warned.push_back(item);
        }
    }
    if (warned.isEmpty()) {
        return;
    }
    // States the setting, not the time left, on purpose, even if less time is left.
    const qsizetype single = std::min(warned.size(), mostSingleWarnings);
    for (qsizetype position = 0; position < single; ++position) {
        m_notificationService.sendWarning(warned[position], leadMinutes);
    }
    m_store->markWarningsSent(warned);
    warned.remove(0, single);
    if (!warned.isEmpty()) {
        m_notificationService.sendJointWarning(warned, leadMinutes);
    }
}

} // namespace lapsa
