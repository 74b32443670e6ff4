// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AddResult.h"
#include "BusyItems.h"
#include "DebouncedTask.h"
#include "Disposals.h"
#include "ItemWorkSource.h"
#include "KnownPaths.h"
#include "LaneSeries.h"
#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"
#include "LapsaSettings.h"
#include "PlaceLooks.h"
#include "RecoveryActions.h"
#include "RecoveryContent.h"
#include "RecoveryPurge.h"
#include "StoppedRemovals.h"
#include "UnfinishedMoves.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QUrl>
#include <QUuid>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace lapsa {

class Appearance;
class Clock;
class FileWriter;
class LaneJob;
class Lanes;
class MainQueue;
class Pasteboard;
class RecoveryNames;
class ScheduledTask;
class SettingsStore;
class Workspace;

/// The central state: the items on countdown, the files kept for recovery, and every operation on them. Main thread
/// only. Operations that change an item look it up by `id`; an unknown id changes nothing. deleteNow() and the recovery
/// operations act on the value they are given. No errors are reported to the caller: a failure with a file is one line
/// in the system log.
///
/// The lanes do what concerns files. What they find or did is heard later, on the main thread; the lists and the disk
/// show it in the promised order. An item stays on the list until what became of its file is known.
class LapsaStore final : public QObject, public ItemWorkSource
{
    Q_OBJECT

public:
    /// What the store depends on. All of it outlives the store.
    struct Environment
    {
        const Clock& clock;
        MainQueue& mainQueue;
        Lanes& lanes;
        FileWriter& fileWriter;
        Appearance& appearance;
        Workspace& workspace;
        Pasteboard& pasteboard;
    };

    struct AddOptions
    {
        /// In minutes. If not set, the lifespan is determined for each file.
        std::optional<std::int64_t> fixedLifespan = std::nullopt;
        bool applyFileTypeRules = true;
    };

    /// Does what a launch needs: sanitises the settings, loads both lists, replaces unreadable ones, and purges what is
    /// due.
    LapsaStore(SettingsStore& settingsStore, const Environment& environment);
    ~LapsaStore() override;

    // ---- State

    [[nodiscard]] const QList<LapsaItem>& items() const { return m_items; }

    [[nodiscard]] const QList<LapsaRecoveryItem>& recoveryItems() const { return m_recoveryItems; }

    [[nodiscard]] SettingsStore& settingsStore() const { return m_settingsStore; }

    [[nodiscard]] Lanes& lanes() const { return m_environment.lanes; }

    /// A short message for the panel, if there is one.
    [[nodiscard]] const std::optional<QString>& lastMessage() const { return m_lastMessage; }

    void setLastMessage(const std::optional<QString>& message);

    /// The current settings of the settings store.
    [[nodiscard]] const LapsaSettings& settings() const;
    /// Sanitises the value before it is published.
    void setSettings(const LapsaSettings& settings);

    // ---- Saving

    /// Hands `recovery.json`, then `state.json` to the writer. A failure is logged; the lists in memory stay.
    void saveNow();
    /// Calls saveNow() in 0.3 seconds; replaces a call that is already waiting.
    void saveSoon();
    void saveRecoveryNow();
    /// Calls saveRecoveryNow() in 0.35 seconds; replaces a call that is already waiting.
    void saveRecoverySoon();

    // ---- Theme

    void applyAppTheme(LapsaTheme theme);
    void applyCurrentTheme();

    // ---- Adding

    using Added = std::function<void(const AddResult& result)>;

    /// Puts files and folders on countdown, in order; adding a listed path again resets its expiry. Paths that do not
    /// exist are skipped, and so are paths that may never be taken; the result names the latter. Calls `added` when the
    /// files are on the list, again for those on a disk that takes longer to answer.
    void addFiles(const QList<QUrl>& urls);
    void addFiles(const QList<QUrl>& urls, const AddOptions& options, const Added& added = {});

    // ---- One item

    /// The file stays where it is.
    void removeFromList(const LapsaItem& item);
    enum class DeleteOutcome
    {
        OffTheList,
        /// Nothing was touched: the folder holds another item that is locked.
        HoldsLockedItem,
        /// The file must be copied but is being written to. The item is due now, and the next pass tries again.
        InUse,
        /// The user locked the item meanwhile, or gave it more time.
        Stopped,
    };

    /// What became of a deletion by hand.
    struct Deletion
    {
        DeleteOutcome outcome = DeleteOutcome::OffTheList;
        LapsaItem item;
        /// The id of its record if the file is in Recovery now; else null.
        QUuid record = {};
        /// Where the file is if it is in the Trash now.
        std::optional<fileSystem::TrashedEntry> trashed = std::nullopt;
    };

    /// Disposes of the file as the settings say, locked or not, and removes the item from the list. If it is a folder,
    /// unlocked items inside it are removed from the list too. Calls `done` when that has happened.
    void deleteNow(const LapsaItem& item, const std::function<void(const Deletion& deletion)>& done = {});
    /// Takes exactly this entry back from the Trash to where it was, under a free name. It is an ordinary file again.
    /// Calls `done` with its path; ENOENT if the entry is not in the Trash any more. Only if there is such an entry.
    void takeBackFromTrash(const Deletion& deletion, const std::function<void(const Result<QString>& path)>& done = {});
    void toggleLock(const LapsaItem& item);
    void lockItem(const QString& id);
    /// A new expiry `minutes`, at least 1, from now.
    void updateExpiration(const LapsaItem& item, std::int64_t minutes);
    void open(const LapsaItem& item);
    void reveal(const LapsaItem& item);
    void copyFilePath(const LapsaItem& item);
    /// The path of a folder item itself, else that of the folder that holds the file.
    void copyFolderPath(const LapsaItem& item);

    // ---- Many items

    /// The same as above for the first item of each id: one announcement and one save, however many there are.
    void lockItems(const QSet<QString>& ids);
    void unlockItems(const QSet<QString>& ids);
    void updateExpirations(const QSet<QString>& ids, std::int64_t minutes);
    /// Every item with one of the ids; the files stay where they are.
    void removeItemsFromList(const QSet<QString>& ids);

    // ---- Expiry

    /// Purges the recovery folder, then disposes of every item that is expired and not locked. A folder that holds a
    /// locked item is skipped. An item whose copy failed because its file was being written to is not tried in every
    /// pass.
    void deleteExpiredItems();

    /// Whether the item is due, but its file was being written to when it was to be copied to another file system.
    [[nodiscard]] bool isInUse(const QString& id) const { return m_inUse.contains(id); }

    [[nodiscard]] std::optional<ItemWork> workOn(const QString& id) const override;

    [[nodiscard]] bool isWorking() const override { return m_disposals.isWorking(); }

    /// Calls `found` with those of the items that no lock holds back, by themselves or by what they hold.
    void findFree(const QList<LapsaItem>& items, const std::function<void(const QList<LapsaItem>& free)>& found);

    void markWarningSent(const QString& id);
    /// The same for many at once, by id and path.
    void markWarningsSent(const QList<LapsaItem>& items);

    // ---- Recovery

    /// Hears what became of the copies, in the order in which they were named; again for those on a disk that takes
    /// longer to answer.
    using RecoveryDone = std::function<void(const QList<RecoveryResult>& results)>;

    /// Moves copies back to their original places, under free names; folders that are gone are made again. They are
    /// ordinary files again, not on countdown. After a failure, the record and the copy stay. Unknown ids get no
    /// result.
    void putBack(const QList<QUuid>& ids, const RecoveryDone& done = {});
    /// The same for records that need not be on the list, as those of RecoveryContent::withoutRecord.
    void putBackItems(const QList<LapsaRecoveryItem>& items, const RecoveryDone& done = {});
    void restoreRecoveryItem(const LapsaRecoveryItem& item);
    /// Removes copies for good. The records go too, even if a copy could not be removed.
    void deleteRecoveryItems(const QList<LapsaRecoveryItem>& items, const RecoveryDone& done = {});
    void deleteRecoveryItem(const LapsaRecoveryItem& item);

    /// Looks into the Recovery folder and calls `found`, on the lane for looks.
    void findRecoveryContent(const std::function<void(const RecoveryContent& content)>& found);
    /// Calls `measured` with the sizes, in bytes, of those folders in Recovery that have one of the names, a few at a
    /// time, until the job is stopped.
    std::shared_ptr<LaneJob>
    measureRecoveryFolders(const QStringList& names,
                           const std::function<void(const QHash<QString, std::int64_t>& sizes)>& measured);

    /// What is being done with copies.
    [[nodiscard]] const RecoveryActions& recoveryActions() const { return m_recoveryActions; }

    /// The copy stays in Recovery, as far as it is still there.
    void stopRecoveryAction(const QUuid& id) { m_recoveryActions.stop(id); }

    /// Removes the copies whose retention has expired and that nothing else keeps (see RecoveryPurge). A record is
    /// dropped even if its copy could not be removed.
    void purgeExpiredRecovery();

    // ---- Watched folders and rules

    /// Puts new files in the watched folders on countdown.
    void scanAutoCleanFolders();
    void addFileTypeRule();
    void removeFileTypeRule(const QUuid& id);
    /// Moves a rule to another position, bounded to the list.
    void moveFileTypeRule(const QUuid& id, qsizetype position);
    void addAutoCleanFolder(const QUrl& url);
    void removeAutoCleanFolder(const QUuid& id);

signals:
    /// Emitted before any of the state above changes, but after a setting has changed, on a later turn of the main
    /// queue.
    void willChange();

private:
    struct FoundFile;
    struct Adding;
    struct AskedPaths;
    struct AddRound;
    struct FreeRound;
    struct Scan;
    /// Called on a lane: for many locked items it takes long.
    using MakePlaces = std::function<std::shared_ptr<const ItemPlaces>()>;
    /// Of copies to another disk.
    enum class Leftovers
    {
        None,
        Possible,
    };

    void writeRecords();
    void subscribeToSettings();
    void reactToSettings(const LapsaSettings& changed);
    void stopWhatIsNotWanted(const LapsaSettings& changed);
    void loadItems();
    void rememberEarlierItems();
    void noteEarlierItems(const QStringList& paths, const fileSystem::KnownPaths& remembered);
    void loadRecoveryItems();
    void tidyRecovery();
    void finishWhatWasBegun(const unfinishedMoves::Found& found);
    void finishMoves();
    void endMove(const unfinishedMoves::Copy& copy, const std::optional<LapsaItem>& movedItem);
    void forgetCopy(const QString& path);
    void finishMove(const unfinishedMoves::Copy& copy, qsizetype next, const std::optional<LapsaItem>& movedItem);
    void finishRecorded(const LapsaRecoveryItem& record);
    void dropRecord(const LapsaRecoveryItem& record);
    void finishPuttingBack(const LapsaRecoveryItem& record, Leftovers leftovers);
    void goOnWithRecovery();
    static void keepRecoveryList();
    [[nodiscard]] LaneSeries::Step lookStep(const AskedPaths& asked, const fileSystem::KnownPaths& known,
                                            const std::weak_ptr<AddRound>& weak);
    void look(const std::shared_ptr<AddRound>& round, const QStringList& paths);
    void takeIn(const std::shared_ptr<AddRound>& round);
    void seen(const std::shared_ptr<AddRound>& round, const std::optional<FoundFile>& found);
    void addSeen(const std::shared_ptr<AddRound>& round);
    void addFound(std::deque<FoundFile> files, const AddOptions& options,
                  const std::function<void(AddResult result)>& added);
    void goOnAdding(const std::shared_ptr<Adding>& adding);
    void finishAdding();
    void addSlice(Adding& adding);
    void addOne(Adding& adding, const FoundFile& file);
    [[nodiscard]] QList<LapsaItem>::iterator firstItem(const QString& id);
    /// Changes the first item of each id; announces this once and saves soon.
    void changeItems(QSet<QString> ids, const std::function<void(LapsaItem&)>& change);
    void removeItems(QString id);
    void keepWhatIsLocked(const QSet<QString>& ids);
    void withLockedPlaces(std::function<void(const QStringList& paths, const QList<SeenPlace>& seen)> then);
    [[nodiscard]] static LaneSeries::Step freeStep(const QList<LapsaItem>& asked,
                                                   const std::shared_ptr<const ItemPlaces>& locked,
                                                   const std::weak_ptr<FreeRound>& round,
                                                   const QPointer<LapsaStore>& store);
    void askWhatIsFree(const std::shared_ptr<FreeRound>& round, const QList<LapsaItem>& items,
                       const MakePlaces& makePlaces);
    void handOverDue(const QStringList& lockedPaths, const QList<SeenPlace>& lockedPlaces);
    [[nodiscard]] DisposalPlan planFor(const QList<LapsaItem>& items, const QStringList& lockedPaths,
                                       const QList<SeenPlace>& lockedPlaces) const;
    void showLongWork();
    bool heardOf(const LapsaItem& item, const DisposalOutcome& outcome);
    void rememberWhatIsLeft(const QString& id, const DisposalOutcome& outcome);
    bool heardOfDeletion(const LapsaItem& item, const DisposalOutcome& outcome,
                         const std::function<void(const Deletion& deletion)>& done);
    void makeRecord(const LapsaItem& item, const QString& recoveryPath);
    void takeOffTheList(const Disposals::Handled& handled);
    void saveBeforeLongWork(std::int64_t bytes);
    void saveAgedRecords();
    [[nodiscard]] QList<LapsaRecoveryItem> recordsOf(const QList<QUuid>& ids) const;
    void act(RecoveryWay way, const QList<LapsaRecoveryItem>& items, const RecoveryDone& done);
    void heardOfCopy(RecoveryWay way, const RecoveryResult& result);
    void dropHandled();
    void leaveOutNewCopies(RecoveryContent& content) const;
    void dropPurged(const QList<LapsaRecoveryItem>& dropped);
    void purge(const RecoveryPurge::KeptItems& kept, TimePoint now);
    void scanFolder(const LapsaAutoCleanFolderRule& rule);
    [[nodiscard]] static Scan scanned(const LapsaAutoCleanFolderRule& rule, const QList<LapsaItem>& items,
                                      const fileSystem::KnownPaths& known, LaneJob& job);
    void takeScanned(const LapsaAutoCleanFolderRule& rule, const Scan& scan);
    void saveKnownPaths();

    SettingsStore& m_settingsStore;
    Environment m_environment;
    QList<LapsaItem> m_items;
    QList<LapsaRecoveryItem> m_recoveryItems;
    BusyItems m_inUse;
    StoppedRemovals m_stoppedRemovals;
    /// When the oldest record that was not yet handed to the writer was made.
    std::optional<TimePoint> m_recordUnsavedSince;
    std::optional<QString> m_lastMessage;
    /// For the items and the watched folders.
    fileSystem::KnownPaths m_knownPaths;
    DebouncedTask m_saveWorkItem;
    DebouncedTask m_recoverySaveWorkItem;
    PlaceLooks m_placeLooks;
    /// Whether a pass waits for where the locked items are.
    bool m_passWaits = false;
    /// Copies without records whose originals may still stand. Their names are claimed.
    QList<unfinishedMoves::Copy> m_unfinished;
    /// The paths of those that lanes are asked about.
    QSet<QString> m_finishing;
    QList<std::shared_ptr<FreeRound>> m_freeRounds;
    /// The ids of the items whose disk has not told yet whether a lock holds them back.
    QSet<QString> m_unanswered;
    std::shared_ptr<RecoveryNames> m_recoveryNames;
    bool m_tidying = false;
    bool m_purging = false;
    /// Runs when neither is under way any more.
    QList<std::function<void()>> m_waitingForRecovery;
    /// Names of new copies that have a record by now, but were claimed while a purge was under way.
    QStringList m_namesToRelease;
    /// The watched folders, by the rule's id, that a lane is listing.
    QSet<QUuid> m_scanning;
    QList<std::shared_ptr<AddRound>> m_addRounds;
    QList<std::shared_ptr<Adding>> m_adding;
    /// How often items have left the list.
    std::uint64_t m_removals = 0;
    bool m_usedRecoveryWindow = true;
    bool m_usedTrash = true;
    std::unique_ptr<ScheduledTask> m_longWork;
    Disposals m_disposals;
    RecoveryActions m_recoveryActions;
    /// The ids of the records whose copies were put back or deleted, until they are dropped, and since when there are
    /// any.
    QSet<QUuid> m_handledCopies;
    TimePoint m_handledSince;
};

} // namespace lapsa
