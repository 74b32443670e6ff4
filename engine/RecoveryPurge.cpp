// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryPurge.h"

#include "RecoveryNames.h"
#include "Spelling.h"

#include <QScopeGuard>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace lapsa {

RecoveryPurge::RecoveryPurge(QList<LapsaRecoveryItem> records, const KeptItems& items, TimePoint now)
    : m_records(std::move(records))
    , m_now(now)
    , m_itemsNotRunOut(items.paths, items.places)
{}

QList<LapsaRecoveryItem> RecoveryPurge::run(fileSystem::Batch& batch, RecoveryNames& names,
                                            const std::function<bool()>& goesOn)
{
    for (const LapsaRecoveryItem& record : std::as_const(m_records)) {
        const std::optional<QString> name = isDue(record) ? std::nullopt : m_folder.nameOf(record.recoveryPath);
        if (name) {
            m_keptNames.insert(*name);
        }
    }
    QList<LapsaRecoveryItem> dropped;
    for (const LapsaRecoveryItem& record : std::as_const(m_records)) {
        if (isDue(record) && goesOn() && purge(record, batch, names) == Fate::Dropped) {
            dropped.push_back(record);
        }
    }
    return dropped;
}

RecoveryPurge::Fate RecoveryPurge::purge(const LapsaRecoveryItem& record, fileSystem::Batch& batch,
                                         RecoveryNames& names)
{
    const std::optional<QString> name = m_folder.nameOf(record.recoveryPath);
    if (!name) {
        return Fate::Dropped;
    }
    // Another lane may just have moved a file to this name, which has no record yet.
    if (!names.claim(*name)) {
        return Fate::Remains;
    }
    const auto claim = qScopeGuard([&] { names.release(*name); });
    const fileSystem::BatchEntry copy = batch.find(m_folder.held(), *name);
    const std::optional<fileSystem::EntryInfo> info = copy.info();
    if (!info) {
        return Fate::Dropped;
    }
    const QString path = m_folder.pathOf(*name);
    if (m_itemsNotRunOut.includes(path, *info) || m_itemsNotRunOut.lieIn(path, *info)) {
        return Fate::Remains;
    }
    // A file that was taken back by hand and expired again can have the same path as its first copy; the later record
    // decides.
    if (!isKept(*name, *info)) {
        const Result<void> removed = batch.remove(copy);
        if (!removed && removed.error().code == ECANCELED) {
            return Fate::Remains; // the program ends: the next start goes on
        }
        // Any other failure is silent on purpose: the record goes either way.
    }
    return Fate::Dropped;
}

bool RecoveryPurge::isKept(const QString& name, const fileSystem::EntryInfo& entry)
{
    if (m_keptNames.isEmpty() || m_keptNames.contains(name)) {
        return !m_keptNames.isEmpty();
    }
    if (!std::exchange(m_keptSeen, true)) {
        for (const QString& kept : std::as_const(m_keptNames)) {
            m_keptSpellings.insert(foldedSpelling(kept), kept);
            if (const auto found = m_folder.held().info(kept)) {
                m_kept.add(found.value(), kept);
            }
        }
    }
    const auto [begin, end] = std::as_const(m_keptSpellings).equal_range(foldedSpelling(name));
    return m_kept.contains(entry, name) ||
           std::any_of(begin, end, [&](const QString& kept) { return spellOneEntry(m_folder.pathOf({}), name, kept); });
}

} // namespace lapsa
