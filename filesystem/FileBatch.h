// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HeldFolder.h"
#include "Protection.h"
#include "Result.h"
#include "TrashedEntry.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lapsa {
class BatchOperations;
struct LocatedEntry;
} // namespace lapsa

namespace lapsa::fileSystem {

class WorkObserver;

/// An entry that a Batch found. Keeps the entry's folder open, so that the look and the action happen in the same
/// folder, whatever happens to the path in between.
class BatchEntry final
{
public:
    /// Whether the path existed, as in fileSystem::exists(): false for a dangling link. In a HeldFolder a dangling link
    /// exists.
    [[nodiscard]] bool exists() const;

    /// How the entry itself looked; nothing if there was none.
    [[nodiscard]] std::optional<EntryInfo> info() const;

private:
    friend class Batch;

    explicit BatchEntry(LocatedEntry located);

    std::shared_ptr<const LocatedEntry> m_located;
};

/// Moves and removes many entries in a row. Looks up what neighbours share once for a few of them; only a few, because
/// the user may change things meanwhile. Use it for one series of operations; do not keep it.
///
/// All operations act on the entry itself, not on the target of a link, and report why it could not be found. Errors:
/// EPERM for a protected entry, EINVAL for an empty or relative path, EACCES if another user has made a known path lead
/// elsewhere.
class Batch final
{
public:
    explicit Batch(const Protection& protection);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

    /// A hint that the entries at these paths will go to the Trash in this order, so that much of the disk's work is
    /// done for several at once. Nothing is left behind for entries that do not go there.
    void expectTrash(QStringList paths);

    /// Calls `announce` before each copy to another file system (but not for a file that is refused without copying)
    /// and before each removal of a folder: both may take long. `bytes` is the size of a file, or the largest number
    /// for a folder, whose size is unknown.
    void announceLongWork(std::function<void(std::int64_t bytes)> announce);

    /// Lets `observer` watch, and stop, copies to other file systems and removals of folders; null for none. Borrowed:
    /// it must outlive the batch or be taken off before.
    void observe(WorkObserver* observer);

    /// Finds an entry, for callers that must check it before they act on it.
    [[nodiscard]] BatchEntry find(const QString& path);

    /// The same for an entry of a held folder. EINVAL if `name` is not the name of a single entry.
    [[nodiscard]] BatchEntry find(const HeldFolder& folder, const QString& name);

    /// Moves a file or a whole folder, also to another file system, keeping times, modes, links and extended
    /// attributes. Never overwrites: EEXIST if `to` exists, even as a dangling link. A failed move leaves the source
    /// intact and nothing at `to`. ETXTBSY if it would have to copy a file that somebody is writing to: try again
    /// later. ECANCELED if the observer stopped the copy, which is possible until it is complete. EINPROGRESS if the
    /// source, or a part of it, could not be removed, nor the complete copy at `to`: both stay.
    Result<void> move(const BatchEntry& entry, const QString& to);
    Result<void> move(const QString& path, const QString& to);

    /// Waits until the originals of all copies that were made are gone on the disk too. Until then a start after a
    /// power cut can recognise the copies. The end of the batch waits as well.
    void settleCopies();

    /// Moves a file, link or whole folder to the user's Trash, from which the desktop can restore it (freedesktop Trash
    /// rules 1.0: the home trash, or the trash folder of the volume that holds the file). Never copies across volumes.
    /// After a failure the file is where it was and nothing is in the trash; but EINPROGRESS if it is in both places,
    /// because no name could be removed: trying again finishes it.
    Result<void> moveToTrash(const BatchEntry& entry);
    Result<void> moveToTrash(const QString& path);

    /// What the last successful moveToTrash() made. Nothing if a path of it is not valid UTF-8, or it is gone already.
    [[nodiscard]] std::optional<TrashedEntry> lastTrashed();

    /// Removes a file, link or whole folder permanently. Follows no links and crosses no mount points. ECANCELED if the
    /// observer stopped the removal of a folder: what is gone is gone, the rest stays.
    Result<void> remove(const BatchEntry& entry);
    Result<void> remove(const QString& path);

private:
    std::unique_ptr<BatchOperations> m_operations;
};

} // namespace lapsa::fileSystem
