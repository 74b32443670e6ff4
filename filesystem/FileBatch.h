// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HeldFolder.h"
#include "Protection.h"
#include "Result.h"

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

/// What a Batch found: the entry to act on. It keeps the entry's folder open, so that the entry that was looked at and
/// the one that is acted on are in the same folder, whatever happens to the path in between.
class BatchEntry final
{
public:
    /// Whether there was something at the path, as fileSystem::exists() says: not if it is a link that leads nowhere.
    /// In a HeldFolder such a link exists.
    [[nodiscard]] bool exists() const;

    /// How the entry itself looked; nothing where there was none.
    [[nodiscard]] std::optional<EntryInfo> info() const;

private:
    friend class Batch;

    explicit BatchEntry(LocatedEntry located);

    std::shared_ptr<const LocatedEntry> m_located;
};

/// Moves and removals of many entries in a row. What neighbours have in common is looked up once for a few of them; for
/// no more than a few, because the user goes on working meanwhile. To be used for one row of operations, and not kept.
///
/// All operations act on the entry itself, not on the target of a link, and report why it could not be found. Errors:
/// EPERM for what is protected, EINVAL for an empty or relative path, EACCES where another user has led a known path
/// elsewhere.
class Batch final
{
public:
    explicit Batch(const Protection& protection);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

    /// A hint: the entries at these paths are about to go to the Trash in this order. Much of what the disk has to do
    /// is then done for several at once. Whatever becomes of them, nothing is left behind.
    void expectTrash(QStringList paths);

    /// Calls `announce` before each copy to another file system (not for a file that is refused without one) and before
    /// each removal of a folder: both may take any time. `bytes` is the size of a file, and the largest number for a
    /// folder, whose size is not known.
    void announceLongWork(std::function<void(std::int64_t bytes)> announce);

    /// Looks at an entry that is to be acted on only after something else was asked about it.
    [[nodiscard]] BatchEntry find(const QString& path);

    /// The same for an entry of a folder that is held open. EINVAL for what is not the name of one entry.
    [[nodiscard]] BatchEntry find(const HeldFolder& folder, const QString& name);

    /// Moves a file or a whole folder, also to another file system, keeping times, modes, links and extended
    /// attributes. Never overwrites: EEXIST when there is something at `to`, be it a dangling link. A move that fails
    /// leaves the source whole and nothing at `to`. ETXTBSY for what would have to be copied while somebody writes to
    /// it: to be tried again later.
    Result<void> move(const BatchEntry& entry, const QString& to);
    Result<void> move(const QString& path, const QString& to);

    /// Moves a file, link or whole folder to the user's Trash, from where the desktop can put it back (freedesktop
    /// Trash rules 1.0: the home trash, or the trash folder of the volume that holds the file). Never copies across
    /// volumes. A failure leaves the file where it was and nothing in the trash.
    Result<void> moveToTrash(const BatchEntry& entry);
    Result<void> moveToTrash(const QString& path);

    /// Removes a file, a link or a whole folder for good. Follows no link and crosses no mount point.
    Result<void> remove(const BatchEntry& entry);
    Result<void> remove(const QString& path);

private:
    std::unique_ptr<BatchOperations> m_operations;
};

} // namespace lapsa::fileSystem
