// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Clock.h"
#include "FileName.h"
#include "FileSystem.h"
#include "Freeing.h"
#include "GoneFolders.h"
#include "LapsaStore.h"
#include "MainQueue.h"
#include "RandomUuid.h"
#include "RecoveryNames.h"
#include "RememberedItems.h"
#include "SystemLog.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace lapsa {

using namespace Qt::StringLiterals;

void LapsaStore::deleteExpiredItems()
{
    if (m_tidying) {
        m_waitingForRecovery.push_back([this] { deleteExpiredItems(); });
        return;
    }
    // First, even while everything is paused.
    purgeExpiredRecovery();
    finishMoves();
    if (settings().pauseAllCountdowns || m_passWaits) {
        return;
    }
    const TimePoint now = m_environment.clock.now();
    const auto due = [now](const LapsaItem& item) { return item.isExpired(now) && !item.locked; };
    if (std::ranges::none_of(std::as_const(m_items), due)) {
        return;
    }
    m_passWaits = true;
    withLockedPlaces([this](const QStringList& paths, const QList<SeenPlace>& seen) {
        m_passWaits = false;
        if (!settings().pauseAllCountdowns) {
            handOverDue(paths, seen);
        }
    });
}

/// What became due while the lanes looked is taken as well.
void LapsaStore::handOverDue(const QStringList& lockedPaths, const QList<SeenPlace>& lockedPlaces)
{
    const TimePoint now = m_environment.clock.now();
    QSet<QString> underWay = m_disposals.ids();
    for (const unfinishedMoves::Copy& copy : std::as_const(m_unfinished)) {
        for (const LapsaItem& item : copy.items) {
            underWay.insert(item.id);
        }
    }
    QList<LapsaItem> due;
    for (const LapsaItem& item : std::as_const(m_items)) {
        if (item.isExpired(now) && !item.locked && !m_inUse.rests(item, now) && !underWay.contains(item.id)) {
            due.push_back(item);
        }
    }
    if (due.isEmpty()) {
        return;
    }
    DisposalPlan plan = planFor(due, lockedPaths, lockedPlaces);
    m_disposals.handOver(
        std::move(plan),
        {.outcome = [this](const LapsaItem& item, const DisposalOutcome& outcome) { return heardOf(item, outcome); },
         .settled = [this](const Disposals::Handled& handled) { takeOffTheList(handled); },
         .longWork = [this](std::int64_t bytes) { saveBeforeLongWork(bytes); }});
    showLongWork();
}

// Checks neither the item's own lock nor the time left, on purpose: the user asked for it now.
void LapsaStore::deleteNow(const LapsaItem& item, const std::function<void(const Deletion& deletion)>& done)
{
    if (m_tidying) {
        m_waitingForRecovery.push_back([this, item, done] { deleteNow(item, done); });
        return;
    }
    withLockedPlaces([this, item, done](const QStringList& paths, const QList<SeenPlace>& seen) {
        DisposalPlan plan = planFor({item}, paths, seen);
        plan.byHand = true;
        m_disposals.handOver(std::move(plan),
                             {.outcome =
                                  [this, done](const LapsaItem& deleted, const DisposalOutcome& outcome) {
                                      return heardOfDeletion(deleted, outcome, done);
                                  },
                              .settled = [this](const Disposals::Handled& handled) { takeOffTheList(handled); },
                              .longWork = [this](std::int64_t bytes) { saveBeforeLongWork(bytes); }});
        showLongWork();
    });
}

DisposalPlan LapsaStore::planFor(const QList<LapsaItem>& items, const QStringList& lockedPaths,
                                 const QList<SeenPlace>& lockedPlaces) const
{
    const auto way = settings().useRecoveryWindow ? DisposalWay::Recovery
                     : settings().useTrash        ? DisposalWay::Trash
                                                  : DisposalWay::ForGood;
    return {.items = items,
            .way = way,
            .lockedPaths = lockedPaths,
            .lockedPlaces = lockedPlaces,
            .knownPaths = m_knownPaths,
            .recoveryNames = m_recoveryNames,
            .stops = nullptr};
}

/// Most work is done before anybody could see it.
void LapsaStore::showLongWork()
{
    constexpr std::chrono::milliseconds soon{500};
    if (!m_disposals.isWorking()) {
        return;
    }
    m_longWork = m_environment.mainQueue.asyncAfter(soon, [this] {
        if (m_disposals.isWorking()) {
            emit willChange();
        }
    });
}

/// The answer: whether the item is to leave the list.
bool LapsaStore::heardOf(const LapsaItem& item, const DisposalOutcome& outcome)
{
    using Fate = DisposalOutcome::Fate;
    saveAgedRecords();
    rememberWhatIsLeft(item.id, outcome);
    switch (outcome.fate) {
    case Fate::HeldByLock:
    case Fate::Stopped:
        return false;
    case Fate::InUse:
        // Not a failure yet: a later pass will try again when nobody is writing any more.
        emit willChange();
        m_inUse.add(item, outcome.wasCopied ? BusyItems::Cost::Copy : BusyItems::Cost::Little,
                    m_environment.clock.now());
        return false;
    case Fate::Unfinished:
        systemLog(u"Lapsa failed to delete "_s + item.path + u": it was copied, but could not be removed"_s);
        if (!outcome.recoveryPath.isEmpty()) {
            m_unfinished.push_back({.path = outcome.recoveryPath, .items = {item}, .isSure = true});
        }
        return false;
    case Fate::Failed:
        systemLog(u"Lapsa failed to delete "_s + item.path + u": "_s + outcome.error.description);
        break;
    case Fate::Done:
        if (!outcome.recoveryPath.isEmpty()) {
            makeRecord(item, outcome.recoveryPath);
            if (outcome.cameTooLate) {
                restoreRecoveryItem(LapsaRecoveryItem(m_recoveryItems.constLast()));
            }
        }
        break;
    case Fate::NothingThere:
        break;
    }
    m_inUse.remove(item.id);
    return !outcome.cameTooLate;
}

bool LapsaStore::heardOfDeletion(const LapsaItem& item, const DisposalOutcome& outcome,
                                 const std::function<void(const Deletion& deletion)>& done)
{
    using Fate = DisposalOutcome::Fate;
    const bool handled = heardOf(item, outcome);
    if (handled) {
        removeItems(item.id);
        saveSoon();
    } else if (const auto found = firstItem(item.id);
               outcome.fate == Fate::InUse && !outcome.cameTooLate && found != m_items.end()) {
        emit willChange();
        found->locked = false;
        found->expiresAt = std::min(found->expiresAt, m_environment.clock.now());
        saveSoon();
    }
    if (done) {
        const bool inRecovery = handled && !outcome.recoveryPath.isEmpty();
        done({.outcome = handled                            ? DeleteOutcome::OffTheList
                         : outcome.fate == Fate::InUse      ? DeleteOutcome::InUse
                         : outcome.fate == Fate::HeldByLock ? DeleteOutcome::HoldsLockedItem
                                                            : DeleteOutcome::Stopped,
              .item = item,
              .record = inRecovery ? m_recoveryItems.constLast().id : QUuid(),
              .trashed = handled ? outcome.trashed : std::nullopt});
    }
    return handled;
}

void LapsaStore::makeRecord(const LapsaItem& item, const QString& recoveryPath)
{
    emit willChange();
    const Clock& clock = m_environment.clock;
    const TimePoint deletedAt = clock.now();
    m_recoveryItems.push_back({
        .id = randomUuid(),
        .originalPath = item.path,
        .recoveryPath = recoveryPath,
        .displayName = item.displayName,
        .deletedAt = deletedAt,
        .purgeAfter = addingHours(clock.now(), std::max<std::int64_t>(settings().recoveryRetentionHours, 1)),
    });
    if (!m_recordUnsavedSince) {
        m_recordUnsavedSince = deletedAt;
        saveRecoverySoon();
    }
    const QString name = lastPathComponent(recoveryPath);
    if (m_purging) {
        m_namesToRelease.push_back(name); // the purge does not know this record
    } else {
        m_recoveryNames->release(name);
    }
}

/// Items that expired meanwhile were not handled; they stay for the next pass.
void LapsaStore::takeOffTheList(const Disposals::Handled& handled)
{
    if (handled.items.isEmpty()) {
        return;
    }
    const std::vector<qsizetype> handledAt = positionsOfRemembered(m_items, handled.items);
    GoneFolders gone(handled.goneFolders);
    emit willChange();
    ++m_removals;
    // What stays is copied, not what goes removed: of a long list that goes, nothing is freed here.
    QList<LapsaItem> kept;
    for (qsizetype position = 0; position < m_items.size(); ++position) {
        const LapsaItem& item = std::as_const(m_items)[position];
        if (item.locked || (handledAt[std::size_t(position)] < 0 && !gone.hold(item.path))) {
            kept.push_back(item);
        }
    }
    QList<LapsaItem> before = std::exchange(m_items, std::move(kept));
    if (before.size() - m_items.size() > soonFreed) {
        freeOnALane(m_environment.lanes, std::move(before));
    }
    saveSoon();
    if (!handled.byHand) {
        saveRecoverySoon();
    }
}

void LapsaStore::markWarningSent(const QString& id)
{
    changeItems({id}, [](LapsaItem& item) { item.fiveMinuteWarningSent = true; });
}

void LapsaStore::markWarningsSent(const QList<LapsaItem>& items)
{
    const std::vector<qsizetype> askedAt = positionsOfRemembered(m_items, items);
    emit willChange();
    for (qsizetype position = 0; position < m_items.size(); ++position) {
        if (askedAt[std::size_t(position)] >= 0) {
            m_items[position].fiveMinuteWarningSent = true;
        }
    }
    saveSoon();
}

void LapsaStore::saveBeforeLongWork(std::int64_t bytes)
{
    constexpr std::int64_t soonCopied = 1 << 20;
    if (bytes > soonCopied && m_recordUnsavedSince) {
        saveRecoveryNow();
    }
}

// Records arrive faster than the timer of a save can fire. If the process ended, unsaved records would be lost and
// their files would stay in Recovery, unknown to Lapsa.
void LapsaStore::saveAgedRecords()
{
    // The next record takes time as well; each should be saved after at most 0.35 seconds.
    constexpr std::chrono::milliseconds oldest{300};
    if (m_recordUnsavedSince && m_environment.clock.now() - *m_recordUnsavedSince >= oldest) {
        saveRecoveryNow();
    }
}

} // namespace lapsa
