// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "KnownPaths.h"
#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"

#include <QList>
#include <QString>

namespace lapsa {

class LaneJob;

/// A start finds what the end of the process cut short between a move and its record, or between a copy and the removal
/// of what was copied. Nothing is written for this while moves run: the list on disk names an item until its record is
/// on disk, and what lies in two places is compared byte by byte. All functions run on lanes.
namespace unfinishedMoves {

/// What lies in Recovery without a record.
struct Copy
{
    QString path;
    /// Those whose names the copy can have.
    QList<LapsaItem> items;
    /// Whether it is known to be the copy of its only item.
    bool isSure = false;
};

struct Found
{
    /// Those that came when or after the records were last saved.
    QList<Copy> copies;
    /// Those whose copies carry the mark of a move to another disk that may be unfinished.
    QList<LapsaRecoveryItem> marked;
    /// Those whose copies have further names on their disk, perhaps at the places they are being put back to.
    QList<LapsaRecoveryItem> withMoreNames;
};

[[nodiscard]] Found find(const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items, LaneJob& job);

enum class Fate
{
    /// Nothing was done: the copy is not that of this item, or nobody can tell.
    Unknown,
    /// The item's file is whole in its place; the copy is gone.
    Gone,
    /// The copy is what is left of the item, or a part of it.
    Moved,
};

/// Finishes the move from `original` to the copy at `path`, as far as it was one.
[[nodiscard]] Fate finish(const QString& path, const QString& original, const fileSystem::KnownPaths& knownPaths,
                          LaneJob& job);

/// The same for a copy with a record.
[[nodiscard]] Fate finish(const LapsaRecoveryItem& record, const fileSystem::KnownPaths& knownPaths, LaneJob& job);

/// Finishes putting back: removes the copy as far as the same stands in its old folder. Returns whether the copy was
/// there, and is gone.
[[nodiscard]] bool finishPuttingBack(const LapsaRecoveryItem& record, LaneJob& job);

} // namespace unfinishedMoves

} // namespace lapsa
