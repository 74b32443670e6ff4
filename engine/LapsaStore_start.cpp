// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileName.h"
#include "FileSystem.h"
#include "JSONDecoder.h"
#include "KeptFiles.h"
#include "LaneGroups.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "MainQueue.h"
#include "RecoveryFolder.h"
#include "RecoveryNames.h"
#include "RestoreNote.h"

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace lapsa {

namespace {

template <typename T>
std::optional<QList<T>> storedList(const QUrl& file)
{
    const Result<QByteArray> bytes = fileSystem::read(file.toLocalFile());
    return bytes ? JSONDecoder::lapsa().decodeList<T>(bytes.value()) : std::nullopt;
}

} // namespace

void LapsaStore::loadItems()
{
    if (auto stored = storedList<LapsaItem>(AppPaths::stateURL())) {
        m_items = *std::move(stored);
        // Later, not at once: looking at each path would hold up the start.
        m_environment.mainQueue.async([store = QPointer(this)] {
            if (store) {
                store->rememberEarlierItems();
            }
        });
        return;
    }
    keepCopyOf(AppPaths::stateURL().toLocalFile());
    keepRecoveryList();
    // Kept on purpose: this also writes the recovery list, which has not been read yet, so an unreadable item list
    // costs the recovery records as well. Their files stay in the recovery folder.
    saveNow();
}

void LapsaStore::rememberEarlierItems()
{
    const std::vector<LaneGroup> groups =
        groupByLane(m_environment.lanes, m_items.size(),
                    [this](qsizetype item) -> const QString& { return m_items.at(item).path; });
    for (const LaneGroup& group : groups) {
        QStringList paths;
        for (const qsizetype item : group.entries) {
            paths.push_back(m_items.at(item).path);
        }
        const auto work = [paths, known = m_knownPaths, store = QPointer(this)](LaneJob&) -> Lanes::Report {
            fileSystem::KnownPaths remembered = known;
            remembered.rememberOthers(paths);
            return [paths, remembered, store] {
                if (store) {
                    store->noteEarlierItems(paths, remembered);
                }
            };
        };
        m_environment.lanes.look(group.path, work);
    }
}

void LapsaStore::noteEarlierItems(const QStringList& paths, const fileSystem::KnownPaths& remembered)
{
    QStringList unknown;
    std::ranges::copy_if(paths, std::back_inserter(unknown),
                         [this](const QString& path) { return !m_knownPaths.stepsTo(path); });
    m_knownPaths.adopt(remembered, unknown);
    saveKnownPaths();
}

void LapsaStore::loadRecoveryItems()
{
    if (auto stored = storedList<LapsaRecoveryItem>(AppPaths::recoveryStateURL())) {
        m_recoveryItems = *std::move(stored);
        return;
    }
    keepRecoveryList();
    saveRecoveryNow();
}

// A list without records is not worth a copy.
void LapsaStore::keepRecoveryList()
{
    const auto stored = storedList<LapsaRecoveryItem>(AppPaths::recoveryStateURL());
    if (!stored || !stored->isEmpty()) {
        keepCopyOf(AppPaths::recoveryStateURL().toLocalFile());
    }
}

/// Removes what moves that the end of the process cut short have left, before anything else moves files there.
void LapsaStore::tidyRecovery()
{
    m_tidying = true;
    const auto work = [now = m_environment.clock.now(), records = m_recoveryItems, items = m_items,
                       store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        RecoveryFolder::removeInterruptedCopies();
        job.alive();
        const unfinishedMoves::Found found = unfinishedMoves::find(records, items, job);
        return [store, found, noted = restoreNote::noted(now)] {
            if (!store) {
                return;
            }
            // Before anything else is moved from or to the same disks: their lanes keep the order.
            store->finishWhatWasBegun(found);
            for (const LapsaRecoveryItem& record : noted) {
                store->finishPuttingBack(record, Leftovers::Possible);
            }
            store->m_tidying = false;
            store->purgeExpiredRecovery();
            store->goOnWithRecovery();
        };
    };
    m_environment.lanes.run(AppPaths::recoveryDirectory().toLocalFile(), work);
}

void LapsaStore::finishWhatWasBegun(const unfinishedMoves::Found& found)
{
    for (const unfinishedMoves::Copy& copy : found.copies) {
        // No purge and nothing else may take it meanwhile.
        if (m_recoveryNames->claim(lastPathComponent(copy.path))) {
            m_unfinished.push_back(copy);
        }
    }
    finishMoves();
    for (const LapsaRecoveryItem& record : found.marked) {
        finishRecorded(record);
    }
    const QString recoveryLane = m_environment.lanes.laneOf(AppPaths::recoveryDirectory().toLocalFile());
    for (const LapsaRecoveryItem& record : found.withMoreNames) {
        // Another name can only be on the same disk; no other is asked.
        if (m_environment.lanes.laneOf(record.originalPath) == recoveryLane) {
            finishPuttingBack(record, Leftovers::None);
        }
    }
}

void LapsaStore::finishMoves()
{
    const QList<unfinishedMoves::Copy> copies = m_unfinished; // shrinks meanwhile
    for (const unfinishedMoves::Copy& copy : copies) {
        if (!m_finishing.contains(copy.path)) {
            m_finishing.insert(copy.path);
            finishMove(copy, 0, std::nullopt);
        }
    }
}

/// Asks the lanes of the items whose copy it can be, one after the other. A copy that is the same as a file that still
/// stands goes; else it gets the record of an item whose file is gone.
void LapsaStore::finishMove(const unfinishedMoves::Copy& copy, qsizetype next,
                            const std::optional<LapsaItem>& movedItem)
{
    if (next == copy.items.size()) {
        endMove(copy, movedItem);
        return;
    }
    const LapsaItem& item = copy.items[next];
    const auto work = [copy, next, movedItem, item, known = m_knownPaths,
                       store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        const unfinishedMoves::Fate fate = unfinishedMoves::finish(copy.path, item.path, known, job);
        return [copy, next, item, fate, store, movedItem] {
            if (!store) {
                return;
            }
            if (fate == unfinishedMoves::Fate::Gone) {
                store->forgetCopy(copy.path);
            } else {
                const bool isFirst = fate == unfinishedMoves::Fate::Moved && !movedItem;
                store->finishMove(copy, next + 1, isFirst ? std::optional(item) : movedItem);
            }
        };
    };
    m_environment.lanes.run(item.path, work);
}

void LapsaStore::endMove(const unfinishedMoves::Copy& copy, const std::optional<LapsaItem>& movedItem)
{
    if (movedItem || !copy.isSure) {
        forgetCopy(copy.path);
    }
    m_finishing.remove(copy.path); // a later pass tries again
    if (movedItem) {
        makeRecord(*movedItem, copy.path);
    }
}

void LapsaStore::forgetCopy(const QString& path)
{
    m_finishing.remove(path);
    m_unfinished.removeIf([&path](const unfinishedMoves::Copy& copy) { return copy.path == path; });
    m_recoveryNames->release(lastPathComponent(path));
}

/// A disk can have reported what it removed as gone, and have it again.
void LapsaStore::finishRecorded(const LapsaRecoveryItem& record)
{
    const auto work = [record, known = m_knownPaths, store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        const bool gone = unfinishedMoves::finish(record, known, job) == unfinishedMoves::Fate::Gone;
        return [record, gone, store] {
            if (store && gone) {
                store->dropRecord(record);
            }
        };
    };
    m_environment.lanes.run(record.originalPath, work);
}

void LapsaStore::dropRecord(const LapsaRecoveryItem& record)
{
    m_handledCopies.insert(record.id);
    dropHandled();
}

void LapsaStore::finishPuttingBack(const LapsaRecoveryItem& record, Leftovers leftovers)
{
    const auto work = [record, leftovers, store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        bool gone = false;
        const auto finish = [&] { gone = unfinishedMoves::finishPuttingBack(record, job); };
        if (leftovers == Leftovers::Possible) {
            restoreNote::removeLeftoversOf(record, finish);
        } else {
            finish();
        }
        return [record, gone, store] {
            if (store && gone) {
                store->dropRecord(record);
            }
        };
    };
    m_environment.lanes.run(record.originalPath, work);
}

/// What has waited for Recovery to be free.
void LapsaStore::goOnWithRecovery()
{
    if (m_tidying || m_purging) {
        return;
    }
    for (const auto& work : std::exchange(m_waitingForRecovery, {})) {
        work();
    }
}

} // namespace lapsa
