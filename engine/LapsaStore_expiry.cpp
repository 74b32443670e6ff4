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

/// State that is shared while disposing of many files in a row.
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
    /// When the user deletes an item, only locks on items inside it count, not its own.
    bool byHand = false;
    /// Whether the current item has cost a long copy.
    bool copied = false;
    /// Id and path of each handled item, whatever happened to its file, in list order.
    QList<std::pair<QString, QString>> handled;
    /// The folders that were disposed of, standardised.
    QSet<QString> goneFolders;
};

namespace {

/// In bytes.
constexpr std::int64_t soonCopied = 1 << 20;

/// The display name as one file name for the recovery folder: it can come from an edited file and contain anything.
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
    // First, even while everything is paused.
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

// Checks neither the item's own lock nor the time left, on purpose: the user asked for it now.
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

// Items that expired meanwhile were not handled; they stay for the next pass.
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
    // Meanwhile the list has only grown, so one parallel walk finds all of them.
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
    // Somebody else removed the file: there is nothing to do or report. A relative path, possible in an edited file, is
    // refused below like everything else that must not be touched.
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

// Not a failure yet: a later pass will try again when nobody is writing any more.
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
        // The recovery folder was removed; ask for it again, which creates it.
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

// A pass can take long, and no timer fires meanwhile. If the process ended, unsaved records would be lost and their
// files would stay in Recovery, unknown to Lapsa.
void LapsaStore::saveAgedRecords()
{
    // The next step takes time as well; a record should be saved after at most 0.35 seconds.
    constexpr std::chrono::milliseconds oldest{300};
    if (m_recordUnsavedSince && m_environment.clock.now() - *m_recordUnsavedSince >= oldest) {
        saveRecoveryNow();
    }
}

} // namespace lapsa
