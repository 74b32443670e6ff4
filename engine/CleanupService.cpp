// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CleanupService.h"

#include "Clock.h"
#include "ExpiryWarnings.h"
#include "ItemPlaces.h"
#include "LapsaStore.h"
#include "MainQueue.h"

#include <chrono>
#include <optional>

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
    const QList<LapsaItem> snapshot = store.items();
    std::optional<ItemPlaces> locked; // most passes do not need it
    QSet<QString> warned;
    QList<LapsaItem> others;
    for (const LapsaItem& item : snapshot) {
        const double remaining = secondsBetween(now, item.expiresAt);
        const bool due = remaining > 0 && remaining <= static_cast<double>(leadMinutes) * secondsPerMinute;
        if (!due || item.locked || item.fiveMinuteWarningSent) {
            continue;
        }
        if (!locked) {
            locked.emplace(ItemPlaces::ofLocked(snapshot));
        }
        // An item that a lock holds back will not be disposed of, so it gets no warning.
        if (locked->areAtOrIn(item.path)) {
            continue;
        }
        // States the setting, not the time left, on purpose, even if less time is left.
        if (warned.size() < mostSingleWarnings) {
            m_notificationService.sendWarning(item, leadMinutes);
        } else {
            others.push_back(item);
        }
        warned.insert(item.id);
    }
    if (!others.isEmpty()) {
        m_notificationService.sendJointWarning(others, leadMinutes);
    }
    store.markWarningsSent(warned);
}

} // namespace lapsa
