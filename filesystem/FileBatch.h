// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"
#include "HeldFolder.h"

#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace lapsa::fileSystem {

/// Moves and removals in a row, one entry after the other: select() looks at an entry, the operation that follows acts
/// on it. What neighbours have in common is looked up once for a few of them; for no more than a few, because the user
/// goes on working meanwhile. To be used for one row of operations, and not kept.
class Batch final
{
public:
    explicit Batch(const Protection& protection);
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

    /// A hint: these entries, named as select() will name them, are about to go to the Trash in this order. Much of
    /// what the disk has to do is then done for several at once. Whatever becomes of them, nothing is left behind.
    void expectTrash(QStringList paths);

    /// Says whether there is something at `path`, as exists() does: a link that leads nowhere is nothing. What the
    /// operations below then do is theirs to say: they act on the entry itself, and fail where there is none.
    bool select(const QString& path);

    /// The same for an entry of a folder that is held open: it is acted upon in that very folder. Links that lead
    /// nowhere are something here.
    bool select(const HeldFolder& folder, const QString& name);

    /// How what is selected looked; nothing where there was nothing.
    [[nodiscard]] std::optional<EntryLook> selected() const;

    /// Calls `announce` before each copy to another file system (not for a file that is refused without one) and before
    /// each removal of a folder: both may take any time. `bytes` is the size of a file; a folder's is not known, and
    /// says as much as there can be.
    void announceLongWork(std::function<void(std::int64_t bytes)> announce);

    /// fileSystem::move() of what is selected.
    Result<void> move(const QString& to);
    /// lapsa::moveToTrash() of what is selected.
    Result<void> moveToTrash();
    /// fileSystem::remove() of what is selected.
    Result<void> remove();

private:
    class Selection;

    std::unique_ptr<Selection> m_selection;
};

} // namespace lapsa::fileSystem
