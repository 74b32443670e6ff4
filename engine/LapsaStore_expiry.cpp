// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FreeNameMove.h"
#include "FreeNames.h"
#include "ItemPlaces.h"
#include "LapsaStore.h"
#include "RandomUuid.h"
#include "SystemLog.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <optional>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

/// What disposing of many files in a row shares.
struct LapsaStore::DisposalRun
{
    DisposalRun(const QList<LapsaItem>& items, const fileSystem::KnownPaths& knownPaths)
        : batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile(), .knownPaths = &knownPaths})
        , locked(ItemPlaces::ofLocked(items))
    {}

    fileSystem::Batch batch;
    QString recoveryFolder = AppPaths::recoveryDirectory().toLocalFile();
    FreeNames freeNames;
    ItemPlaces locked;
    /// By hand a lock holds for what lies in the item alone: the user said now.
    bool byHand = false;
    /// Whether the item that is dealt with has cost a long copy.
    bool copied = false;
    /// Of the items that were dealt with, whatever became of their files: id and path, in the order of the list.
    QList<std::pair<QString, QString>> handled;
    /// The folders that are gone from their places, standardised.
    QSet<QString> goneFolders;
};

namespace {

/// In bytes.
constexpr std::int64_t soonCopied = 1 << 20;

/// A display name as one file name inside the recovery folder: it can come from an edited file and say anything.
QString recoveryFileName(const LapsaItem& item)
{
    QString name = item.displayName;
    name.replace(u'/', u'_').replace(QChar::Null, u'_');
    if (name.isEmpty() || name == "."_L1 || name == ".."_L1) {
        return u"_"_s;
    }
    return name;
}

QStringList expiredPaths(const QList<LapsaItem>& items, TimePoint now)
{
    QStringList paths;
    for (const LapsaItem& item : items) {
        if (item.isExpired(now) && !item.locked) {
            paths.push_back(item.path);
        }
    }
    return paths;
}

} // namespace

void LapsaStore::deleteExpiredItems()
{
    // First, and even while everything is paused.
    purgeExpiredRecovery();
    if (settings().pauseAllCountdowns) {
        return;
    }

    const Clock& clock = m_environment.clock;
    const QList<LapsaItem> snapshot = m_items;
    std::optional<DisposalRun> run;
    for (const LapsaItem& item : snapshot) {
        if (item.isExpired(clock.now()) && !item.locked && !m_inUse.rests(item, clock.now())) {
            if (!run) {
                run.emplace(snapshot, m_knownPaths);
                announceLongWork(*run);
                if (!settings().useRecoveryWindow && settings().useTrash) {
                    run->batch.expectTrash(expiredPaths(snapshot, clock.now()));
                }
            }
            saveAgedRecords();
            deleteFileForItem(item, *run);
        }
    }
    if (run && !run->handled.isEmpty()) {
        takeOffTheList(*run);
        saveSoon();
        saveRecoverySoon();
    }
}

// Neither the item's own lock nor the time left is asked for, on purpose: the user said now.
LapsaStore::DeleteOutcome LapsaStore::deleteNow(const LapsaItem& item)
{
    DisposalRun run(m_items, m_knownPaths);
    run.byHand = true;
    announceLongWork(run);
    deleteFileForItem(item, run);
    if (isInUse(item.id)) {
        const auto found = firstItem(item.id);
        if (found != m_items.end()) {
            emit willChange();
            found->locked = false;
            found->expiresAt = std::min(found->expiresAt, m_environment.clock.now());
            saveSoon();
        }
        return DeleteOutcome::InUse;
    }
    if (run.handled.isEmpty()) {
        return DeleteOutcome::HoldsLockedItem;
    }
    removeItems(item.id);
    takeOffTheList(run);
    saveSoon();
    return DeleteOutcome::OffTheList;
}

// What ran out meanwhile was not dealt with: it stays for the next pass.
void LapsaStore::takeOffTheList(const DisposalRun& run)
{
    const auto wentWithItsFolder = [&run](const LapsaItem& item) {
        const std::optional<QString> path = fileSystem::standardizedPath(item.path);
        for (QString folder = parentPath(path.value_or(QString())); folder.size() > 1; folder = parentPath(folder)) {
            if (run.goneFolders.contains(folder)) {
                return true;
            }
        }
        return false;
    };
    emit willChange();
    // The list only grew meanwhile, so that one walk along both finds them all.
    auto next = run.handled.cbegin();
    m_items.removeIf([&](const LapsaItem& item) {
        const bool handled = next != run.handled.cend() && next->first == item.id && next->second == item.path;
        next += handled ? 1 : 0;
        return !item.locked && (handled || (!run.goneFolders.isEmpty() && wentWithItsFolder(item)));
    });
}

void LapsaStore::markWarningSent(const QString& id)
{
    markWarningsSent({id});
}

void LapsaStore::markWarningsSent(const QSet<QString>& ids)
{
    changeItems(ids, [](LapsaItem& item) { item.fiveMinuteWarningSent = true; });
}

void LapsaStore::deleteFileForItem(const LapsaItem& item, DisposalRun& run)
{
    const fileSystem::BatchEntry entry = run.batch.find(item.path);
    const std::optional<fileSystem::EntryInfo> info = entry.info();
    const bool heldByLock =
        info && ((!run.byHand && run.locked.includes(item.path, *info)) || run.locked.lieIn(item.path, *info));
    if (heldByLock) {
        return;
    }
    run.handled.push_back({item.id, item.path});
    // Somebody else was faster: nothing to do and nothing to say. A path that leads nowhere by itself, as an edited
    // file may hold one, is refused below like everything else that must not be touched.
    if (!entry.exists() && item.path.startsWith(u'/')) {
        m_inUse.remove(item.id);
        return;
    }
    run.copied = false;
    const Result<void> disposed = disposeOf(item, entry, run);
    if (!disposed && disposed.error().code == ETXTBSY) {
        keepUntilUnused(item, run);
        return;
    }
    m_inUse.remove(item.id);
    if (!disposed) {
        systemLog(u"Lapsa failed to delete "_s + item.path + u": "_s + disposed.error().description);
    } else if (info && info->isDirectory) {
        run.goneFolders.insert(fileSystem::standardizedPath(item.path).value_or(item.path));
    }
}

// Not a failure yet: a later pass will find that nobody writes any more.
void LapsaStore::keepUntilUnused(const LapsaItem& item, DisposalRun& run)
{
    emit willChange();
    run.handled.pop_back();
    m_inUse.add(item, run.copied ? BusyItems::Cost::Copy : BusyItems::Cost::Little, m_environment.clock.now());
}

Result<void> LapsaStore::disposeOf(const LapsaItem& item, const fileSystem::BatchEntry& entry, DisposalRun& run)
{
    if (settings().useRecoveryWindow) {
        return moveToRecovery(item, entry, run);
    }
    return settings().useTrash ? run.batch.moveToTrash(entry) : run.batch.remove(entry);
}

Result<void> LapsaStore::moveToRecovery(const LapsaItem& item, const fileSystem::BatchEntry& entry, DisposalRun& run)
{
    const QString name = recoveryFileName(item);
    Result<QString> moved = moveToFreeName(run.batch, entry, run.recoveryFolder + u'/' + name, run.freeNames);
    if (!moved && moved.error().code == ENOENT) {
        // Somebody removed the folder.
        run.recoveryFolder = AppPaths::recoveryDirectory().toLocalFile();
        moved = moveToFreeName(run.batch, entry, run.recoveryFolder + u'/' + name, run.freeNames);
    }
    if (!moved) {
        return moved.error();
    }
    emit willChange();
    const Clock& clock = m_environment.clock;
    const TimePoint deletedAt = clock.now();
    m_recoveryItems.push_back({
        .id = randomUuid(),
        .originalPath = item.path,
        .recoveryPath = std::move(moved).value(),
        .displayName = item.displayName,
        .deletedAt = deletedAt,
        .purgeAfter = addingHours(clock.now(), std::max<std::int64_t>(settings().recoveryRetentionHours, 1)),
    });
    if (!m_recordUnsavedSince) {
        m_recordUnsavedSince = deletedAt;
    }
    return {};
}

void LapsaStore::announceLongWork(DisposalRun& run)
{
    run.batch.announceLongWork([this, &run](std::int64_t bytes) {
        run.copied = bytes > soonCopied;
        saveBeforeLongWork(bytes);
    });
}

void LapsaStore::saveBeforeLongWork(std::int64_t bytes)
{
    if (bytes > soonCopied && m_recordUnsavedSince) {
        saveRecoveryNow();
    }
}

// A pass can be long, and no timer fires meanwhile. The end of the process would cost the records that are not saved:
// their files would stay in Recovery, unknown.
void LapsaStore::saveAgedRecords()
{
    // What comes next takes its time as well: a record is to be on the disk after at most 0.35 seconds.
    constexpr std::chrono::milliseconds oldest{300};
    if (m_recordUnsavedSince && m_environment.clock.now() - *m_recordUnsavedSince >= oldest) {
        saveRecoveryNow();
    }
}

} // namespace lapsa
