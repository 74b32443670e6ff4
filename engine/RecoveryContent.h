// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaRecoveryItem.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstdint>
#include <functional>
#include <optional>

namespace lapsa {

class LaneJob;

/// A copy as it lies in Recovery.
struct RecoveryCopy
{
    /// In the Recovery folder.
    QString name;
    bool isFolder = false;
    /// Unknown for a folder, which takes long to measure.
    std::optional<std::int64_t> bytes;

    friend bool operator==(const RecoveryCopy&, const RecoveryCopy&) = default;
};

/// What one look into this Lapsa's Recovery folder found.
struct RecoveryContent
{
    /// By the ids of their records, and of the records below.
    QHash<QUuid, RecoveryCopy> copies;
    /// The ids of the records whose copies are gone, or lie elsewhere.
    QSet<QUuid> withoutCopy;
    /// Made up for what has no record: nobody purges it. `originalPath` is a place for it in the user's download
    /// folder, else in the home folder, `deletedAt` when it came. A name has the same id in every look.
    QList<LapsaRecoveryItem> withoutRecord;
};

/// On a lane. What a move is just filling is left out.
[[nodiscard]] RecoveryContent lookIntoRecovery(const QList<LapsaRecoveryItem>& records, LaneJob& job);

/// On a lane: calls `measured` with the size, in bytes, of each folder in Recovery that has one of the names, until the
/// job is stopped.
void measureRecoveryFolders(const QStringList& names, LaneJob& job,
                            const std::function<void(const QString& name, std::int64_t bytes)>& measured);

} // namespace lapsa
