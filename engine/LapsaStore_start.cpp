// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileSystem.h"
#include "JSONDecoder.h"
#include "KeptFiles.h"
#include "LaneGroups.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "MainQueue.h"
#include "RecoveryFolder.h"
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
    const auto work = [now = m_environment.clock.now(), store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        RecoveryFolder::removeInterruptedCopies();
        job.alive();
        return [store, noted = restoreNote::noted(now)] {
            if (!store) {
                return;
            }
            for (const LapsaRecoveryItem& record : noted) {
                // Before any restore to the same disk: its lane keeps the order.
                store->m_environment.lanes.run(record.originalPath, [record](LaneJob&) -> Lanes::Report {
                    restoreNote::removeLeftoversOf(record);
                    return {};
                });
            }
            store->m_tidying = false;
            store->purgeExpiredRecovery();
            store->goOnWithRecovery();
        };
    };
    m_environment.lanes.run(AppPaths::recoveryDirectory().toLocalFile(), work);
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
