// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryIndex.h"
#include "FileBatch.h"
#include "ItemPlaces.h"
#include "LapsaItem.h"
#include "LapsaRecoveryItem.h"
#include "RecoveryFolder.h"
#include "Time.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

namespace lapsa {

/// One pass over the records to purge copies whose retention has expired. Removes files only in this Lapsa's own
/// Recovery folder; a copy stays there while another record that is not yet due keeps it.
class RecoveryPurge final
{
public:
    /// `records` outlives this object.
    RecoveryPurge(const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items, TimePoint now);

    /// Removes what is due and returns the records that remain: those that are not due, and those whose copies, or
    /// something inside them, are on the list again, locked or not yet expired. A record whose copy cannot be removed,
    /// is gone or lies elsewhere is dropped.
    [[nodiscard]] QList<LapsaRecoveryItem> run(fileSystem::Batch& batch);

private:
    enum class Fate
    {
        Remains,
        Dropped,
    };

    [[nodiscard]] bool isDue(const LapsaRecoveryItem& record) const { return record.purgeAfter <= m_now; }

    [[nodiscard]] Fate purge(const LapsaRecoveryItem& record, fileSystem::Batch& batch);
    [[nodiscard]] bool isKept(const QString& name, const fileSystem::EntryInfo& entry);

    const QList<LapsaRecoveryItem>& m_records;
    TimePoint m_now;
    RecoveryFolder m_folder;
    ItemPlaces m_itemsNotRunOut;
    /// The copies that records not yet due keep: their names and their identities on disk.
    QSet<QString> m_keptNames;
    bool m_keptSeen = false;
    EntryIndex m_kept;
    QMultiHash<QString, QString> m_keptSpellings;
};

} // namespace lapsa
