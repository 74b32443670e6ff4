// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FreeNames.h"
#include "LapsaStore.h"
#include "RandomUuid.h"
#include "SystemLog.h"

#include <algorithm>
#include <cerrno>

namespace lapsa {

using namespace Qt::StringLiterals;

/// What disposing of many files in a row shares.
struct LapsaStore::DisposalRun
{
    explicit DisposalRun(const fileSystem::KnownPaths& knownPaths)
        : batch({.folder = AppPaths::applicationSupportDirectory().toLocalFile(), .knownPaths = &knownPaths})
    {}

    fileSystem::Batch batch;
    QString recoveryFolder = AppPaths::recoveryDirectory().toLocalFile();
    FreeNames freeNames;
};

namespace {

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
        if (item.isExpired(clock.now()) && !item.locked) {
            if (!run) {
                run.emplace(m_knownPaths);
                if (!settings().useRecoveryWindow && settings().useTrash) {
                    run->batch.expectTrash(expiredPaths(snapshot, clock.now()));
                }
            }
            deleteFileForItem(item, *run);
        }
    }
    if (!run) {
        return;
    }

    // Tested anew against the clock, on purpose: an item whose time ran out while the files above were on their way
    // leaves the list as well, and its file stays where it is.
    emit willChange();
    const TimePoint now = clock.now();
    m_items.removeIf([now](const LapsaItem& item) { return item.isExpired(now) && !item.locked; });
    saveSoon();
    saveRecoverySoon();
}

void LapsaStore::markWarningSent(const QString& id)
{
    markWarningsSent({id});
}

void LapsaStore::markWarningsSent(QSet<QString> ids)
{
    bool announced = false;
    for (qsizetype position = 0; position < m_items.size() && !ids.isEmpty(); ++position) {
        if (!ids.remove(m_items.at(position).id)) {
            continue;
        }
        if (!announced) {
            emit willChange();
            announced = true;
        }
        m_items[position].fiveMinuteWarningSent = true;
    }
    if (announced) {
        saveSoon();
    }
}

void LapsaStore::deleteFileForItem(const LapsaItem& item)
{
    DisposalRun run(m_knownPaths);
    deleteFileForItem(item, run);
}

void LapsaStore::deleteFileForItem(const LapsaItem& item, DisposalRun& run)
{
    // Somebody else was faster: nothing to do and nothing to say. A path that leads nowhere by itself, as an edited
    // file may hold one, is refused below like everything else that must not be touched.
    if (!run.batch.select(item.path) && item.path.startsWith(u'/')) {
        return;
    }
    Result<void> disposed;
    if (settings().useRecoveryWindow) {
        disposed = moveToRecovery(item, run);
    } else if (settings().useTrash) {
        disposed = run.batch.moveToTrash();
    } else {
        disposed = run.batch.remove();
    }
    if (!disposed) {
        systemLog(u"Lapsa failed to delete "_s + item.path + u": "_s + disposed.error().description);
    }
}

Result<void> LapsaStore::moveToRecovery(const LapsaItem& item, DisposalRun& run)
{
    const QString name = recoveryFileName(item);
    Result<QString> moved = moveToFreeName(run.batch, run.recoveryFolder + u'/' + name, run.freeNames);
    if (!moved && moved.error().code == ENOENT) {
        // Somebody removed the folder.
        run.recoveryFolder = AppPaths::recoveryDirectory().toLocalFile();
        moved = moveToFreeName(run.batch, run.recoveryFolder + u'/' + name, run.freeNames);
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
    return {};
}

} // namespace lapsa
