// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryIndex.h"
#include "FileBatch.h"
#include "ItemPlaces.h"
#include "LapsaRecoveryItem.h"
#include "RecoveryFolder.h"
#include "Time.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace lapsa {

class RecoveryNames;

/// One pass over the records to purge copies whose retention has expired. Removes files only in this Lapsa's own
/// Recovery folder; a copy stays there while another record that is not yet due keeps it.
class RecoveryPurge final
{
public:
    /// The items on the list that are locked or have not run out: where they are by their paths, and as seen on disk.
    struct KeptItems
    {
        QStringList paths;
        QList<SeenPlace> places;
    };

    RecoveryPurge(QList<LapsaRecoveryItem> records, const KeptItems& items, TimePoint now);

    /// Removes what is due and returns the records to drop. Those that are not due remain, and those whose copies, or
    /// something inside them, are on the list again, locked or not yet expired. A record whose copy cannot be removed,
    /// is gone or lies elsewhere is dropped. Ends early if `goesOn` returns false.
    [[nodiscard]] QList<LapsaRecoveryItem> run(fileSystem::Batch& batch, RecoveryNames& names,
                                               const std::function<bool()>& goesOn);

private:
    enum class Fate
    {
        Remains,
        Dropped,
    };

    [[nodiscard]] bool isDue(const LapsaRecoveryItem& record) const { return record.purgeAfter <= m_now; }

    [[nodiscard]] Fate purge(const LapsaRecoveryItem& record, fileSystem::Batch& batch, RecoveryNames& names);
    [[nodiscard]] bool isKept(const QString& name, const fileSystem::EntryInfo& entry);

    QList<LapsaRecoveryItem> m_records;
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
