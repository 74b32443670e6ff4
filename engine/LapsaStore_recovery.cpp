// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FreeNameMove.h"
#include "FreeNames.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "RecoveryFolder.h"
#include "RecoveryNames.h"
#include "RecoveryPurge.h"
#include "RestoreNote.h"
#include "SystemLog.h"
#include "WorkObserver.h"

#include <QHash>
#include <QPointer>
#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <optional>
#include <tuple>
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

/// Moves the copy to the original path of its record.
Result<void> putBack(const LapsaRecoveryItem& item, const fileSystem::BatchEntry& copy, fileSystem::Batch& batch)
{
    FreeNames freeNames;
    const QString folder = parentPath(item.originalPath);
    if (auto made = fileSystem::createDirectory(folder, fileSystem::Access::Default); !made) {
        return made;
    }
    const auto moved = moveToFreeName(batch, copy, item.originalPath, freeNames);
    return moved ? Result<void>() : Result<void>(moved.error());
}

/// What became of a copy that was to be put back.
struct Restored
{
    bool moved = false;
    /// Without it and not moved, the copy is gone; its record stays until its retention has expired.
    std::optional<FileError> error = std::nullopt;
};

/// On a lane. `saveRecords` runs on the main thread.
Restored restore(const LapsaRecoveryItem& item, RecoveryNames& names, LaneJob& job,
                 const std::function<void()>& saveRecords)
{
    RecoveryFolder recovery;
    const std::optional<QString> name = recovery.nameOf(item.recoveryPath);
    if (!name && fileSystem::exists(item.recoveryPath)) {
        // Not one of our copies, whatever the record says.
        return {.error = FileError::fromErrno(EPERM)};
    }
    // A purge that begins now must not take it.
    if (name && !names.claim(*name)) {
        return {.error = FileError::fromErrno(EBUSY)};
    }
    const auto claim = qScopeGuard([&] { names.release(name.value_or(QString())); });
    fileSystem::Batch batch(protection());
    JobObserver observer(job);
    batch.observe(&observer);
    bool noted = false;
    batch.announceLongWork([&](std::int64_t) {
        if (!std::exchange(noted, true)) {
            restoreNote::write(item);
        }
        job.tell(saveRecords);
    });
    const auto copy = name ? std::optional(batch.find(recovery.held(), *name)) : std::nullopt;
    if (!copy || !copy->exists()) {
        return {};
    }
    const Result<void> restored = putBack(item, *copy, batch);
    if (!restored) {
        return {.error = restored.error()};
    }
    if (noted) {
        restoreNote::drop(item);
    }
    return {.moved = true};
}

} // namespace

void LapsaStore::restoreRecoveryItem(const LapsaRecoveryItem& item)
{
    if (m_tidying || m_purging) {
        m_waitingForRecovery.push_back([this, item] { restoreRecoveryItem(item); });
        return;
    }
    const auto work = [item, names = m_recoveryNames, store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        const Restored restored = restore(item, *names, job, [store] {
            if (store && store->m_recordUnsavedSince) {
                store->saveRecoveryNow();
            }
        });
        return [item, store, restored] {
            if (restored.error) {
                systemLog(u"Lapsa recovery restore failed: "_s + restored.error->description);
            } else if (restored.moved && store) {
                store->removeRecoveryRecords(item.id);
                store->saveRecoverySoon();
            }
        };
    };
    m_environment.lanes.run(item.originalPath, work);
}

// Failures are silent on purpose, including a copy that is already gone and a path outside Recovery: the record is
// removed anyway.
void LapsaStore::deleteRecoveryItem(const LapsaRecoveryItem& item)
{
    if (m_tidying || m_purging) {
        m_waitingForRecovery.push_back([this, item] { deleteRecoveryItem(item); });
        return;
    }
    const auto work = [item, names = m_recoveryNames, store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        RecoveryFolder recovery;
        const std::optional<QString> name = recovery.nameOf(item.recoveryPath);
        if (name && !names->claim(*name)) {
            return {}; // it is being put back
        }
        fileSystem::Batch batch(protection());
        JobObserver observer(job);
        batch.observe(&observer);
        if (name) {
            std::ignore = batch.remove(batch.find(recovery.held(), *name));
            names->release(*name);
        }
        return [item, store] {
            if (store) {
                store->removeRecoveryRecords(item.id);
                store->saveRecoverySoon();
            }
        };
    };
    m_environment.lanes.run(AppPaths::recoveryDirectory().toLocalFile(), work);
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

// The id is passed by value: it may belong to a record in the list, which moves while removeIf() closes the gaps.
void LapsaStore::removeRecoveryRecords(QUuid id)
{
    emit willChange();
    m_recoveryItems.removeIf([id](const LapsaRecoveryItem& item) { return item.id == id; });
}

} // namespace lapsa
