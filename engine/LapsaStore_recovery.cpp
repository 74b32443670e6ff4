// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileBatch.h"
#include "FileName.h"
#include "FreeNames.h"
#include "LapsaStore.h"
#include "SystemLog.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

fileSystem::Protection protection()
{
    return {.folder = AppPaths::applicationSupportDirectory().toLocalFile()};
}

Result<void> putBack(const LapsaRecoveryItem& item)
{
    FreeNames freeNames;
    const QString folder = parentPath(item.originalPath);
    if (auto made = fileSystem::createDirectory(folder, fileSystem::Access::Default); !made) {
        return made;
    }
    fileSystem::Batch batch(protection());
    batch.select(item.recoveryPath);
    const auto moved = moveToFreeName(batch, item.originalPath, freeNames);
    return moved ? Result<void>() : Result<void>(moved.error());
}

// Silent on purpose, a copy that is already gone included: the record goes either way.
void removeCopy(const LapsaRecoveryItem& item, fileSystem::Batch& batch)
{
    batch.select(item.recoveryPath);
    std::ignore = batch.remove();
}

} // namespace

void LapsaStore::restoreRecoveryItem(const LapsaRecoveryItem& item)
{
    // The record of a copy that is gone stays until its time is up.
    if (!fileSystem::exists(item.recoveryPath)) {
        return;
    }
    if (const auto restored = putBack(item); !restored) {
        systemLog(u"Lapsa recovery restore failed: "_s + restored.error().description);
        return;
    }
    removeRecoveryRecords(item.id);
    saveRecoverySoon();
}

void LapsaStore::deleteRecoveryItem(const LapsaRecoveryItem& item)
{
    fileSystem::Batch batch(protection());
    removeCopy(item, batch);
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
    // A file that was taken back by hand, and expired again, can lie where its first copy lay: its time is the later
    // one.
    QSet<QString> stillKept;
    for (const LapsaRecoveryItem& item : std::as_const(m_recoveryItems)) {
        if (!due(item)) {
            stillKept.insert(item.recoveryPath);
        }
    }
    fileSystem::Batch batch(protection());
    for (const LapsaRecoveryItem& item : std::as_const(m_recoveryItems)) {
        if (due(item) && !stillKept.contains(item.recoveryPath)) {
            removeCopy(item, batch);
        }
    }
    emit willChange();
    m_recoveryItems.removeIf(due);
    saveRecoverySoon();
}

// A restore to another file system that the end of the process cut short has left a part of a copy beside the place it
// was meant for. Its record is still there, since that goes last.
void LapsaStore::removeInterruptedRestores() const
{
    QSet<QString> folders;
    for (const LapsaRecoveryItem& item : m_recoveryItems) {
        folders.insert(parentPath(item.originalPath));
    }
    std::ranges::for_each(std::as_const(folders), &fileSystem::removeInterruptedCopies);
}

// The id by value: it may be that of a record in the list itself, which moves while the list closes its gaps.
void LapsaStore::removeRecoveryRecords(QUuid id)
{
    emit willChange();
    m_recoveryItems.removeIf([id](const LapsaRecoveryItem& item) { return item.id == id; });
}

} // namespace lapsa
