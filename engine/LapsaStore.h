// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AddResult.h"
#include "BusyItems.h"
#include "DebouncedTask.h"
#include "KnownPaths.h"
#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"
#include "LapsaSettings.h"
#include "Result.h"

#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <optional>

namespace lapsa {

class Appearance;
class Clock;
class FileWriter;
class MainQueue;
class Pasteboard;
class SettingsStore;
class Workspace;

namespace fileSystem {

class BatchEntry;

} // namespace fileSystem

/// The central state: the items on countdown, the files kept for recovery, and every operation on them. Main thread
/// only. Operations that change an item look it up by `id`; an unknown id changes nothing. deleteNow() and the recovery
/// operations act on the value they are given. No errors are reported to the caller: a failure with a file is one line
/// in the system log.
class LapsaStore final : public QObject
{
    Q_OBJECT

public:
    /// What the store depends on. All of it outlives the store.
    struct Environment
    {
        const Clock& clock;
        MainQueue& mainQueue;
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

    /// A short message for the panel, if there is one.
    [[nodiscard]] const std::optional<QString>& lastMessage() const { return m_lastMessage; }

    void setLastMessage(const std::optional<QString>& message);

    /// The current settings of the settings store.
    [[nodiscard]] const LapsaSettings& settings() const;
    /// Sanitises the value before it is published.
    void setSettings(const LapsaSettings& settings);

    // ---- Saving

    /// Hands `state.json`, then `recovery.json` to the writer. A failure is logged; the lists in memory stay.
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

    /// Puts files and folders on countdown, in order; adding a listed path again resets its expiry. Paths that do not
    /// exist are skipped, and so are paths that may never be taken; the result names the latter.
    AddResult addFiles(const QList<QUrl>& urls);
    AddResult addFiles(const QList<QUrl>& urls, const AddOptions& options);

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
    };

    /// Disposes of the file as the settings say, locked or not, and removes the item from the list. If it is a folder,
    /// unlocked items inside it are removed from the list too.
    [[nodiscard]] DeleteOutcome deleteNow(const LapsaItem& item);
    void toggleLock(const LapsaItem& item);
    void lockItem(const QString& id);
    /// The same for many at once: the first item of each id.
    void lockItems(const QSet<QString>& ids);
    /// A new expiry `minutes`, at least 1, from now.
    void updateExpiration(const LapsaItem& item, std::int64_t minutes);
    void open(const LapsaItem& item);
    void reveal(const LapsaItem& item);
    void copyFilePath(const LapsaItem& item);
    /// The path of a folder item itself, else that of the folder that holds the file.
    void copyFolderPath(const LapsaItem& item);

    // ---- Expiry

    /// Purges the recovery folder, then disposes of every item that is expired and not locked. A folder that holds a
    /// locked item is skipped. An item whose copy failed because its file was being written to is not tried in every
    /// pass.
    void deleteExpiredItems();

    /// Whether the item is due, but its file was being written to when it was to be copied to another file system.
    [[nodiscard]] bool isInUse(const QString& id) const { return m_inUse.contains(id); }

    void markWarningSent(const QString& id);
    /// The same for many at once: the first item of each id.
    void markWarningsSent(const QSet<QString>& ids);

    // ---- Recovery

    /// Moves a copy back to its original place, under a free name. It is an ordinary file again, not on countdown.
    void restoreRecoveryItem(const LapsaRecoveryItem& item);
    void deleteRecoveryItem(const LapsaRecoveryItem& item);
    /// Removes the copies whose retention has expired and that nothing else keeps (see RecoveryPurge). A record is
    /// dropped even if its copy could not be removed.
    void purgeExpiredRecovery();

    // ---- Watched folders and rules

    /// Puts new files in the watched folders on countdown.
    void scanAutoCleanFolders();
    void addFileTypeRule();
    void removeFileTypeRule(const QUuid& id);
    void addAutoCleanFolder(const QUrl& url);
    void removeAutoCleanFolder(const QUuid& id);

signals:
    /// Emitted before any of the state above changes, but after a setting has changed, on a later turn of the main
    /// queue.
    void willChange();

private:
    struct FoundFile;
    struct DisposalRun;

    void subscribeToSettings();
    void reactToSettings(LapsaTheme theme);
    void loadItems();
    void rememberEarlierItems();
    void loadRecoveryItems();
    static void keepRecoveryList();
    AddResult addFound(const QList<FoundFile>& files, const AddOptions& options);
    [[nodiscard]] QList<LapsaItem>::iterator firstItem(const QString& id);
    /// Changes the first item of each id; announces this once and saves soon.
    void changeItems(QSet<QString> ids, const std::function<void(LapsaItem&)>& change);
    void removeItems(QString id);
    void deleteFileForItem(const LapsaItem& item, DisposalRun& run);
    [[nodiscard]] Result<void> disposeOf(const LapsaItem& item, const fileSystem::BatchEntry& entry, DisposalRun& run);
    [[nodiscard]] Result<void> moveToRecovery(const LapsaItem& item, const fileSystem::BatchEntry& entry,
                                              DisposalRun& run);
    void takeOffTheList(const DisposalRun& run);
    void keepUntilUnused(const LapsaItem& item, DisposalRun& run);
    void announceLongWork(DisposalRun& run);
    void saveBeforeLongWork(std::int64_t bytes);
    void saveAgedRecords();
    void removeRecoveryRecords(QUuid id);
    void scanFolder(const LapsaAutoCleanFolderRule& rule);
    void saveKnownPaths();

    SettingsStore& m_settingsStore;
    Environment m_environment;
    QList<LapsaItem> m_items;
    QList<LapsaRecoveryItem> m_recoveryItems;
    BusyItems m_inUse;
    /// When the oldest record that was not yet handed to the writer was made.
    std::optional<TimePoint> m_recordUnsavedSince;
    std::optional<QString> m_lastMessage;
    /// For the items and the watched folders.
    fileSystem::KnownPaths m_knownPaths;
    DebouncedTask m_saveWorkItem;
    DebouncedTask m_recoverySaveWorkItem;
};

} // namespace lapsa
