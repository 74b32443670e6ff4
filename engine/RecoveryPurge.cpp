// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryPurge.h"

#include "Spelling.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <tuple>
#include <utility>

namespace lapsa {

namespace {

QList<LapsaItem> notRunOut(const QList<LapsaItem>& items, TimePoint now)
{
    QList<LapsaItem> chosen;
    std::ranges::copy_if(items, std::back_inserter(chosen),
                         [now](const LapsaItem& item) { return item.locked || !item.isExpired(now); });
    return chosen;
}

} // namespace

RecoveryPurge::RecoveryPurge(const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items, TimePoint now)
    : m_records(records)
    , m_now(now)
    , m_itemsNotRunOut(notRunOut(items, now))
{}

QList<LapsaRecoveryItem> RecoveryPurge::run(fileSystem::Batch& batch)
{
    for (const LapsaRecoveryItem& record : m_records) {
        const std::optional<QString> name = isDue(record) ? std::nullopt : m_folder.nameOf(record.recoveryPath);
        if (name) {
            m_keptNames.insert(*name);
        }
    }
    QList<LapsaRecoveryItem> remaining;
    for (const LapsaRecoveryItem& record : m_records) {
        if (!isDue(record) || purge(record, batch) == Fate::Remains) {
            remaining.push_back(record);
        }
    }
    return remaining;
}

RecoveryPurge::Fate RecoveryPurge::purge(const LapsaRecoveryItem& record, fileSystem::Batch& batch)
{
    const std::optional<QString> name = m_folder.nameOf(record.recoveryPath);
    if (!name) {
        return Fate::Dropped;
    }
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
        std::ignore = batch.remove(copy); // silent on purpose: the record goes either way
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
