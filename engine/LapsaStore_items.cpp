// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Clock.h"
#include "FileName.h"
#include "FileSystem.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "LapsaStore.h"
#include "MainQueue.h"
#include "Pasteboard.h"
#include "Workspace.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace lapsa {

void LapsaStore::removeFromList(const LapsaItem& item)
{
    m_disposals.stop(item.id);
    removeItems(item.id);
    saveSoon();
}

// The countdown continues while the item is locked, on purpose: locking never adds time.
void LapsaStore::toggleLock(const LapsaItem& item)
{
    const auto found = firstItem(item.id);
    if (found == m_items.end()) {
        return;
    }
    emit willChange();
    found->locked = !found->locked;
    if (found->locked) {
        keepWhatIsLocked({found->id});
    }
    saveSoon();
}

void LapsaStore::lockItem(const QString& id)
{
    lockItems({id});
}

void LapsaStore::updateExpiration(const LapsaItem& item, std::int64_t minutes)
{
    const auto found = firstItem(item.id);
    if (found == m_items.end()) {
        return;
    }
    m_disposals.stop(found->id);
    emit willChange();
    // No upper bound here, on purpose: the caller limits what the user can enter.
    found->expiresAt = addingMinutes(m_environment.clock.now(), std::max<std::int64_t>(minutes, 1));
    found->fiveMinuteWarningSent = false;
    saveSoon();
}

/// A lane may be about to take these items, or a folder that holds one of them.
void LapsaStore::keepWhatIsLocked(const QSet<QString>& ids)
{
    if (!m_disposals.isWorking()) {
        return;
    }
    QSet<QString> locked;
    QStringList paths;
    for (const LapsaItem& item : std::as_const(m_items)) {
        if (item.locked && ids.contains(item.id)) {
            locked.insert(item.id);
            paths.push_back(item.path);
        }
    }
    m_disposals.stop(locked);
    m_disposals.stopFoldersAbove(paths);
    // A link can lead to a locked item as well: what has not begun is handed over anew, with this lock.
    m_disposals.closePasses();
    m_environment.mainQueue.async([store = QPointer(this)] {
        if (store) {
            store->deleteExpiredItems();
        }
    });
}

void LapsaStore::open(const LapsaItem& item)
{
    m_environment.workspace.open(item.url());
}

void LapsaStore::reveal(const LapsaItem& item)
{
    m_environment.workspace.reveal(item.url());
}

void LapsaStore::copyFilePath(const LapsaItem& item)
{
    m_environment.pasteboard.setText(item.path);
}

void LapsaStore::copyFolderPath(const LapsaItem& item)
{
    const auto work = [path = item.path, store = QPointer(this)](LaneJob&) -> Lanes::Report {
        return [store, folder = fileSystem::isDirectory(path) ? path : parentPath(path)] {
            if (store) {
                store->m_environment.pasteboard.setText(folder);
            }
        };
    };
    m_environment.lanes.look(item.path, work);
}

std::optional<ItemWork> LapsaStore::workOn(const QString& id) const
{
    if (const std::optional<ItemWork> work = m_disposals.workOn(id)) {
        return work;
    }
    if (!m_stoppedRemovals.contains(id)) {
        return std::nullopt;
    }
    const auto item = std::ranges::find(m_items, id, &LapsaItem::id);
    return item != m_items.cend() ? m_stoppedRemovals.find(*item) : std::nullopt;
}

/// As long as nothing more has become of the folder, what was left is left.
void LapsaStore::rememberWhatIsLeft(const QString& id, const DisposalOutcome& outcome)
{
    using Fate = DisposalOutcome::Fate;
    if (outcome.fate != Fate::Stopped && outcome.fate != Fate::HeldByLock) {
        m_stoppedRemovals.remove(id);
    } else if (const auto item = firstItem(id); outcome.filesLeft && item != m_items.end()) {
        emit willChange();
        m_stoppedRemovals.add(*item, *outcome.filesLeft);
    }
}

QList<LapsaItem>::iterator LapsaStore::firstItem(const QString& id)
{
    return std::ranges::find(m_items, id, &LapsaItem::id);
}

void LapsaStore::changeItems(QSet<QString> ids, const std::function<void(LapsaItem&)>& change)
{
    bool announced = false;
    for (qsizetype position = 0; position < m_items.size() && !ids.isEmpty(); ++position) {
        if (!ids.remove(m_items.at(position).id)) {
            continue;
        }
        if (!announced) {
            emit willChange();
            announced = true;
        }
        change(m_items[position]);
    }
    if (announced) {
        saveSoon();
    }
}

// The id is passed by value: it may belong to an item in the list, which moves while removeIf() closes the gaps.
void LapsaStore::removeItems(QString id) // NOLINT(performance-unnecessary-value-param)
{
    emit willChange();
    ++m_removals;
    m_items.removeIf([&id](const LapsaItem& item) { return item.id == id; });
}

} // namespace lapsa
