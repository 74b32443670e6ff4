// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddedLifespans.h"
#include "Clock.h"
#include "FileName.h"
#include "FoundFile.h"
#include "ItemsByPath.h"
#include "MainQueue.h"
#include "ShortTurn.h"

#include <QPointer>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace lapsa {

namespace {

/// Reads the clock twice, once for each time in the record.
LapsaItem newItem(const QString& path, std::int64_t minutes, const Clock& clock)
{
    const TimePoint addedAt = clock.now();
    return {
        .id = newItemId(),
        .path = path,
        .displayName = lastPathComponent(path),
        .addedAt = addedAt,
        .expiresAt = addingMinutes(clock.now(), minutes),
    };
}

} // namespace

/// Files that are being put on the list, a slice in each turn of the main loop.
struct LapsaStore::Adding
{
    std::deque<FoundFile> files;
    AddedLifespans lifespans;
    ItemsByPath known;
    std::function<void(AddResult)> added;
    AddResult result = {};
    bool begun = false;
};

void LapsaStore::addFound(std::deque<FoundFile> files, const AddOptions& options,
                          const std::function<void(AddResult)>& added)
{
    const auto count = qsizetype(files.size());
    const auto adding = std::make_shared<Adding>(Adding{.files = std::move(files),
                                                        .lifespans = AddedLifespans(settings(), options),
                                                        .known = ItemsByPath(count),
                                                        .added = added});
    adding->result.ids.reserve(count);
    m_adding.push_back(adding);
    goOnAdding(adding);
}

void LapsaStore::goOnAdding(const std::shared_ptr<Adding>& adding)
{
    addSlice(*adding);
    if (adding->files.empty()) {
        m_adding.removeOne(adding);
        adding->added(std::move(adding->result));
        return;
    }
    m_environment.mainQueue.async([store = QPointer(this), weak = std::weak_ptr(adding)] {
        if (const auto alive = weak.lock(); store && alive) {
            store->goOnAdding(alive);
        }
    });
}

/// At the end there are no more turns.
void LapsaStore::finishAdding()
{
    for (const std::shared_ptr<Adding>& adding : std::exchange(m_adding, {})) {
        while (!adding->files.empty()) {
            addSlice(*adding);
        }
        adding->added(std::move(adding->result));
    }
}

void LapsaStore::addSlice(Adding& adding)
{
    if (adding.files.empty() || !adding.known.readOn(m_items, m_removals)) {
        return;
    }
    emit willChange();
    if (!std::exchange(adding.begun, true)) {
        m_lastMessage.reset();
    }
    for (ShortTurn turn({}); !adding.files.empty() && !turn.isOver();) {
        addOne(adding, adding.files.front());
        adding.files.pop_front();
    }
    saveSoon();
}

void LapsaStore::addOne(Adding& adding, const FoundFile& file)
{
    const Clock& clock = m_environment.clock;
    m_knownPaths.note(file.path, file.steps);
    const std::int64_t minutes = adding.lifespans.minutesFor(lastPathComponent(file.path), file.isDirectory);
    if (const qsizetype position = adding.known.find(m_items, file.path); position >= 0) {
        LapsaItem& item = m_items[position];
        m_disposals.stop(item.id);
        item.expiresAt = addingMinutes(clock.now(), minutes);
        item.fiveMinuteWarningSent = false;
        adding.result.ids.push_back(item.id);
        return;
    }
    m_items.push_back(newItem(file.path, minutes, clock));
    adding.known.added(file.path, m_items.size() - 1);
    adding.result.ids.push_back(m_items.constLast().id);
    if (file.isDirectory) {
        adding.result.newFolders.push_back(file.path);
    }
}

} // namespace lapsa
