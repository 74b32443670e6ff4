// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileBatch.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "RecoveryNames.h"
#include "RecoveryPurge.h"
#include "SystemLog.h"
#include "WorkObserver.h"

#include <QHash>
#include <QPointer>
#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

fileSystem::Protection protection()
{
    return {.folder = AppPaths::applicationSupportDirectory().toLocalFile()};
}

/// Passes signs of life to the job, and its wish to end.
class JobObserver final : public fileSystem::WorkObserver
{
public:
    explicit JobObserver(LaneJob& job)
        : m_job(job)
    {}

    void copied(std::int64_t bytes, std::int64_t total) override { m_job.report(bytes, total); }

    void removed(std::int64_t) override { m_job.alive(); }

    [[nodiscard]] bool stopRequested() const override { return m_job.stopRequested(); }

private:
    LaneJob& m_job;
};

} // namespace

void LapsaStore::restoreRecoveryItem(const LapsaRecoveryItem& item)
{
    putBackItems({item});
}

void LapsaStore::putBack(const QList<QUuid>& ids, const RecoveryDone& done)
{
    putBackItems(recordsOf(ids), done);
}

void LapsaStore::putBackItems(const QList<LapsaRecoveryItem>& items, const RecoveryDone& done)
{
    act(RecoveryWay::PutBack, items, done);
}

void LapsaStore::deleteRecoveryItem(const LapsaRecoveryItem& item)
{
    deleteRecoveryItems({item});
}

void LapsaStore::deleteRecoveryItems(const QList<LapsaRecoveryItem>& items, const RecoveryDone& done)
{
    act(RecoveryWay::Delete, items, done);
}

/// The first record of each id, in the order of the ids.
QList<LapsaRecoveryItem> LapsaStore::recordsOf(const QList<QUuid>& ids) const
{
    QHash<QUuid, qsizetype> places;
    for (qsizetype place = m_recoveryItems.size() - 1; place >= 0; --place) {
        places.insert(m_recoveryItems[place].id, place);
    }
    QList<LapsaRecoveryItem> records;
    for (const QUuid& id : ids) {
        if (const auto found = places.constFind(id); found != places.cend()) {
            records.push_back(m_recoveryItems[*found]);
            places.erase(found); // asked for once
        }
    }
    return records;
}

void LapsaStore::act(RecoveryWay way, const QList<LapsaRecoveryItem>& items, const RecoveryDone& done)
{
    if (m_tidying || m_purging) {
        m_waitingForRecovery.push_back([this, way, items, done] { act(way, items, done); });
        return;
    }
    if (items.isEmpty()) {
        if (done) {
            done({});
        }
        return;
    }
    emit willChange();
    m_recoveryActions.handOver({.records = items, .way = way, .names = m_recoveryNames, .stops = nullptr},
                               {.result = [this, way](const RecoveryResult& result) { heardOfCopy(way, result); },
                                .longWork =
                                    [this] {
                                        dropHandled();
                                        if (m_recordUnsavedSince) {
                                            saveRecoveryNow();
                                        }
                                    },
                                .done =
                                    [this, done](const QList<RecoveryResult>& results) {
                                        dropHandled();
                                        if (done) {
                                            done(results);
                                        }
                                    }});
}

void LapsaStore::heardOfCopy(RecoveryWay way, const RecoveryResult& result)
{
    if (way == RecoveryWay::PutBack && result.error && result.error->code != ECANCELED) {
        systemLog(u"Lapsa recovery restore failed: "_s + result.error->description);
    }
    // A deletion that fails is silent on purpose, including that of a path outside Recovery: the record goes anyway.
    // The record of a copy that is gone stays after a restore, until its retention has expired.
    const bool stays = way == RecoveryWay::PutBack
                           ? result.error || result.copyGone || result.copyStays
                           : result.error && (result.error->code == ECANCELED || result.error->code == EBUSY);
    if (stays) {
        return;
    }
    const TimePoint now = m_environment.clock.now();
    if (m_handledCopies.isEmpty()) {
        m_handledSince = now;
    }
    m_handledCopies.insert(result.id);
    // The list is long where many are handled: not once for each.
    constexpr std::chrono::milliseconds oldest{300};
    if (now - m_handledSince >= oldest) {
        dropHandled();
    }
}

/// Drops the records of the copies that were put back or deleted.
void LapsaStore::dropHandled()
{
    if (m_handledCopies.isEmpty()) {
        return;
    }
    emit willChange();
    m_recoveryItems.removeIf([handled = std::exchange(m_handledCopies, {})](const LapsaRecoveryItem& item) {
        return handled.contains(item.id);
    });
    saveRecoverySoon();
}

void LapsaStore::purgeExpiredRecovery()
{
    const TimePoint now = m_environment.clock.now();
    const auto due = [now](const LapsaRecoveryItem& item) { return item.purgeAfter <= now; };
    if (m_tidying || m_purging || std::ranges::none_of(std::as_const(m_recoveryItems), due)) {
        return;
    }
    m_purging = true;
    QStringList paths;
    for (const LapsaItem& item : std::as_const(m_items)) {
        if (item.locked || !item.isExpired(now)) {
            paths.push_back(item.path);
        }
    }
    m_placeLooks.look(paths, [this, paths, now](const QList<SeenPlace>& seen) { purge({paths, seen}, now); });
}

void LapsaStore::purge(const RecoveryPurge::KeptItems& kept, TimePoint now)
{
    const auto work = [records = m_recoveryItems, kept, now, names = m_recoveryNames,
                       store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        fileSystem::Batch batch(protection());
        JobObserver observer(job);
        batch.observe(&observer);
        batch.announceLongWork([&job, store](std::int64_t bytes) {
            job.tell([store, bytes] {
                if (store) {
                    store->saveBeforeLongWork(bytes);
                }
            });
        });
        RecoveryPurge purge(records, kept, now);
        const QList<LapsaRecoveryItem> dropped = purge.run(batch, *names, [&job] {
            job.alive();
            return !job.stopRequested();
        });
        return [store, dropped] {
            if (store) {
                store->dropPurged(dropped);
            }
        };
    };
    m_environment.lanes.run(AppPaths::recoveryDirectory().toLocalFile(), work);
}

void LapsaStore::dropPurged(const QList<LapsaRecoveryItem>& dropped)
{
    m_purging = false;
    const auto next = qScopeGuard([this] { goOnWithRecovery(); });
    for (const QString& name : std::exchange(m_namesToRelease, {})) {
        m_recoveryNames->release(name);
    }
    if (dropped.isEmpty()) {
        return;
    }
    QHash<QUuid, QString> paths;
    for (const LapsaRecoveryItem& item : dropped) {
        paths.insert(item.id, item.recoveryPath);
    }
    emit willChange();
    m_recoveryItems.removeIf([&](const LapsaRecoveryItem& item) {
        const auto found = paths.constFind(item.id);
        return found != paths.cend() && *found == item.recoveryPath;
    });
    saveRecoverySoon();
}

} // namespace lapsa
