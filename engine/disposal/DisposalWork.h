// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "FreeNameMove.h"
#include "ItemPlaces.h"
#include "KnownPaths.h"
#include "LapsaItem.h"
#include "Result.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lapsa {

class LaneJob;
class RecoveryNames;

/// What is to become of files.
enum class DisposalWay
{
    Recovery,
    Trash,
    ForGood,
};

/// What lanes are told about disposals. The main thread changes `stops` alone.
struct DisposalPlan
{
    QList<LapsaItem> items;
    DisposalWay way = DisposalWay::Recovery;
    /// When the user deletes an item, only locks on items inside it count, not its own.
    bool byHand = false;
    QStringList lockedPaths;
    QList<SeenPlace> lockedPlaces;
    fileSystem::KnownPaths knownPaths;
    std::shared_ptr<RecoveryNames> recoveryNames;
    /// One per item: whether the user wants the file to stay after all.
    std::unique_ptr<std::atomic<bool>[]> stops; // NOLINT(modernize-avoid-c-arrays)
};

/// What became of an item's file.
struct DisposalOutcome
{
    enum class Fate
    {
        /// Gone from its place, as it was to be.
        Done,
        /// Somebody else had removed it.
        NothingThere,
        /// Nothing was touched: it is locked, or is a folder that holds a locked item.
        HeldByLock,
        /// The user wanted it to stay. Of a folder that was being removed for good, a part may be gone.
        Stopped,
        /// It must be copied but is being written to.
        InUse,
        /// Whole in Recovery or in the Trash, but it, or a part of the folder, could not be removed from its place.
        Unfinished,
        Failed,
    };

    Fate fate = Fate::Done;
    /// Where it is in Recovery now, if it is there. The name is claimed until the record has been made.
    QString recoveryPath = {};
    /// Where it is in the Trash now, if the user deleted it by hand and it is there.
    std::optional<fileSystem::TrashedEntry> trashed = std::nullopt;
    bool wasFolder = false;
    bool wasCopied = false;   ///< Whether much was copied, even if in vain.
    bool cameTooLate = false; ///< Whether the user, while it happened, wanted the file to stay.
    /// After Stopped, if a part is gone: the files that are left; negative if they could not be counted.
    std::optional<std::int64_t> filesLeft = std::nullopt;
    /// After Failed.
    FileError error = {};
};

/// The display name as one file name for the recovery folder: it can come from an edited file and contain anything.
[[nodiscard]] QString recoveryFileName(const LapsaItem& item);

/// Disposes of files on a lane. Belongs to one thread.
class DisposalWork final
{
public:
    /// In bytes; the largest number if the size is unknown.
    using LongWork = std::function<void(std::int64_t bytes)>;

    /// `announce` is called before each copy to another file system and each removal of a folder.
    DisposalWork(std::shared_ptr<const DisposalPlan> plan, LongWork announce);
    ~DisposalWork();

    [[nodiscard]] DisposalOutcome dispose(std::size_t number, LaneJob& job);

private:
    class Observer;

    [[nodiscard]] bool isHeld(const LapsaItem& item, const fileSystem::EntryInfo& info) const;
    [[nodiscard]] Result<void> goTheWay(const LapsaItem& item, const fileSystem::BatchEntry& entry,
                                        DisposalOutcome& outcome);
    [[nodiscard]] Result<NewPlace> moveToRecovery(const LapsaItem& item, const fileSystem::BatchEntry& entry);

    std::shared_ptr<const DisposalPlan> m_plan;
    LongWork m_announce;
    fileSystem::Batch m_batch;
    QString m_recoveryFolder;
    FreeNames m_freeNames;
    ItemPlaces m_locked;
    bool m_copied = false;
    bool m_trashExpected = false;
};

} // namespace lapsa
