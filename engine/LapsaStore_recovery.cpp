// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FreeNameMove.h"
#include "FreeNames.h"
#include "LapsaStore.h"
#include "RecoveryFolder.h"
#include "RecoveryPurge.h"
#include "RestoreNote.h"
#include "SystemLog.h"

#include <algorithm>
#include <cerrno>
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

} // namespace

void LapsaStore::restoreRecoveryItem(const LapsaRecoveryItem& item)
{
    RecoveryFolder recovery;
    const std::optional<QString> name = recovery.nameOf(item.recoveryPath);
    fileSystem::Batch batch(protection());
    bool noted = false;
    batch.announceLongWork([&](std::int64_t) {
        if (!std::exchange(noted, true)) {
            restoreNote::write(item);
        }
        if (m_recordUnsavedSince) {
            saveRecoveryNow();
        }
    });
    const auto copy = name ? std::optional(batch.find(recovery.held(), *name)) : std::nullopt;
    Result<void> restored;
    if (copy && copy->exists()) {
        restored = putBack(item, *copy, batch);
    } else if (!name && fileSystem::exists(item.recoveryPath)) {
        // Not one of our copies, whatever the record says.
        restored = FileError::fromErrno(EPERM);
    } else {
        // The copy is gone; its record stays until its retention has expired.
        return;
    }
    if (!restored) {
        systemLog(u"Lapsa recovery restore failed: "_s + restored.error().description);
        return;
    }
    if (noted) {
        restoreNote::drop(item);
    }
    removeRecoveryRecords(item.id);
    saveRecoverySoon();
}

// Failures are silent on purpose, including a copy that is already gone and a path outside Recovery: the record is
// removed anyway.
void LapsaStore::deleteRecoveryItem(const LapsaRecoveryItem& item)
{
    RecoveryFolder recovery;
    fileSystem::Batch batch(protection());
    const std::optional<QString> name = recovery.nameOf(item.recoveryPath);
    if (name) {
        std::ignore = batch.remove(batch.find(recovery.held(), *name));
    }
    removeRecoveryRecords(item.id);
    saveRecoverySoon();
}

void LapsaStore::purgeExpiredRecovery()
{
    const TimePoint now = m_environment.clock.now();
    const auto due = [now](const LapsaRecoveryItem& item) { return item.purgeAfter <= now; };
    if (std::ranges::none_of(m_recoveryItems, due)) {
        return;
    }
    fileSystem::Batch batch(protection());
    batch.announceLongWork([this](std::int64_t bytes) { saveBeforeLongWork(bytes); });
    RecoveryPurge purge(m_recoveryItems, m_items, now);
    QList<LapsaRecoveryItem> left = purge.run(batch);
    if (left.size() == m_recoveryItems.size()) {
        return;
    }
    emit willChange();
    m_recoveryItems = std::move(left);
    saveRecoverySoon();
}

// The id is passed by value: it may belong to a record in the list, which moves while removeIf() closes the gaps.
void LapsaStore::removeRecoveryRecords(QUuid id)
{
    emit willChange();
    m_recoveryItems.removeIf([id](const LapsaRecoveryItem& item) { return item.id == id; });
}

} // namespace lapsa
