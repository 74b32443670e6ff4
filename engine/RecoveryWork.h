// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "FreeNames.h"
#include "LapsaRecoveryItem.h"
#include "RecoveryFolder.h"
#include "Result.h"

#include <QList>
#include <QString>
#include <QUuid>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

namespace lapsa {

class LaneJob;
class RecoveryNames;

/// What the user wants of copies in Recovery.
enum class RecoveryWay
{
    PutBack,
    Delete,
};

/// What became of one copy.
struct RecoveryResult
{
    /// Of its record.
    QUuid id;
    /// Where the file is now that it was put back.
    QString path = {};
    /// Whether that is not where it was: its name was taken there.
    bool otherPlace = false;
    /// Whether the copy, or a part of it, could not be removed from Recovery after that.
    bool copyStays = false;
    /// Whether nothing was done because the copy is not in Recovery any more.
    bool copyGone = false;
    /// Why it failed: the copy is still there. ECANCELED if it was stopped, EBUSY if something else is done with the
    /// copy, EPERM if the record names something outside Recovery or the original folder is protected, EACCES or EROFS
    /// if that folder is not writable, ENOSPC if the disk is full.
    std::optional<FileError> error = std::nullopt;
};

/// What lanes are told. The main thread changes `stops` alone.
struct RecoveryPlan
{
    QList<LapsaRecoveryItem> records;
    RecoveryWay way = RecoveryWay::PutBack;
    std::shared_ptr<RecoveryNames> names;
    /// One per record: whether the copy is to stay after all.
    std::unique_ptr<std::atomic<bool>[]> stops; // NOLINT(modernize-avoid-c-arrays)
};

/// Puts copies back, or deletes them, on a lane. Acts only inside this Lapsa's own Recovery folder. Belongs to one
/// thread.
class RecoveryWork final
{
public:
    /// `announce` is called before each copy to another file system and each removal of a folder.
    RecoveryWork(std::shared_ptr<const RecoveryPlan> plan, std::function<void()> announce);
    RecoveryWork(const RecoveryWork&) = delete;
    RecoveryWork& operator=(const RecoveryWork&) = delete;
    ~RecoveryWork();

    [[nodiscard]] RecoveryResult run(std::size_t number, LaneJob& job);

private:
    class Observer;

    [[nodiscard]] RecoveryResult handle(const LapsaRecoveryItem& record, const QString& name);
    [[nodiscard]] RecoveryResult putBack(const LapsaRecoveryItem& record, const fileSystem::BatchEntry& copy);
    void note(const LapsaRecoveryItem& record);
    void dropNoted();

    std::shared_ptr<const RecoveryPlan> m_plan;
    std::function<void()> m_announce;
    RecoveryFolder m_recovery;
    fileSystem::Batch m_batch;
    FreeNames m_freeNames;
    /// To which the last copy went: it need not be made again.
    std::optional<QString> m_lastFolder;
    /// The one that is worked on.
    const LapsaRecoveryItem* m_current = nullptr;
    /// The records that stand in the note on disk, of the folder to which copies are being moved.
    QList<LapsaRecoveryItem> m_noted;
};

} // namespace lapsa
