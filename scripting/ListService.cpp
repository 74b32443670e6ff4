// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListService.h"

#include "MainQueue.h"
#include "Time.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace lapsa {

namespace {

/// Disks that have not answered by then are not waited for.
constexpr std::chrono::seconds patience{5};
/// Joins the changes of a burst.
constexpr std::chrono::milliseconds betweenSignals{250};

std::size_t markOf(const QList<LapsaItem>& items)
{
    std::size_t mark = 0;
    for (const LapsaItem& item : items) {
        mark = qHashMulti(mark, item.id, item.path, item.expiresAt.time_since_epoch().count(), item.locked);
    }
    return mark;
}

std::size_t markOf(const QList<LapsaRecoveryItem>& records)
{
    std::size_t mark = 0;
    for (const LapsaRecoveryItem& record : records) {
        mark = qHashMulti(mark, record.id, record.purgeAfter.time_since_epoch().count());
    }
    return mark;
}

} // namespace

/// One call that adds.
struct ListService::Adding
{
    QStringList paths;
    AddDone done;
    QHash<QString, AddOutcome> outcomes;
    std::unique_ptr<ScheduledTask> limit;
};

ListService::ListService(LapsaStore& store, MainQueue& queue)
    : m_store(store)
    , m_queue(queue)
    , m_itemsSeen(markOf(store.items()))
    , m_recordsSeen(markOf(store.recoveryItems()))
{
    connect(&store, &LapsaStore::willChange, this, &ListService::compareSoon);
}

ListService::~ListService() = default;

void ListService::add(const QStringList& paths, int minutes, const AddDone& done)
{
    const auto adding = std::make_shared<Adding>();
    adding->paths = paths;
    adding->done = done;
    m_adding.push_back(adding);
    const auto finishLater = [this, weak = std::weak_ptr(adding)] {
        if (const auto alive = weak.lock()) {
            finish(alive);
        }
    };
    adding->limit = m_queue.asyncAfter(patience, finishLater);
    QList<QUrl> urls;
    urls.reserve(paths.size());
    std::ranges::transform(paths, std::back_inserter(urls), &QUrl::fromLocalFile);
    const auto lifespan = minutes > 0 ? std::optional<std::int64_t>(minutes) : std::nullopt;
    m_store.addFiles(urls, {.fixedLifespan = lifespan}, [this, weak = std::weak_ptr(adding)](const AddResult& result) {
        if (const auto alive = weak.lock()) {
            noteAdded(alive, result);
        }
    });
}

void ListService::noteAdded(const std::shared_ptr<Adding>& adding, const AddResult& result)
{
    const QSet<QString> added(result.ids.cbegin(), result.ids.cend());
    for (const LapsaItem& item : m_store.items()) {
        if (added.contains(item.id)) {
            adding->outcomes.insert(item.path, {.path = item.path, .item = item});
        }
    }
    for (const AddResult::Refused& refused : result.refused) {
        adding->outcomes.insert(refused.path, {.path = refused.path, .refusal = refused.reason});
    }
    for (const QString& path : result.missing) {
        adding->outcomes.insert(path, {.path = path, .nothingThere = true});
    }
    const auto isKnown = [&adding](const QString& path) { return adding->outcomes.contains(path); };
    if (std::ranges::all_of(adding->paths, isKnown)) {
        finish(adding);
    }
}

void ListService::finish(const std::shared_ptr<Adding>& adding)
{
    QList<AddOutcome> outcomes;
    outcomes.reserve(adding->paths.size());
    for (const QString& path : std::as_const(adding->paths)) {
        outcomes.push_back(adding->outcomes.value(path, {.path = path}));
    }
    m_adding.remove(adding);
    adding->done(outcomes);
}

bool ListService::setLocked(const QString& id, bool locked)
{
    const std::optional<LapsaItem> item = itemWith(id);
    if (item && item->locked != locked) {
        m_store.toggleLock(*item);
    }
    return item.has_value();
}

bool ListService::takeOffTheList(const QString& id)
{
    const std::optional<LapsaItem> item = itemWith(id);
    if (item) {
        m_store.removeFromList(*item);
    }
    return item.has_value();
}

std::optional<LapsaItem> ListService::itemWith(const QString& id) const
{
    const auto found = std::ranges::find(m_store.items(), id, &LapsaItem::id);
    return found == m_store.items().cend() ? std::nullopt : std::optional(*found);
}

bool ListService::putBack(const QList<QUuid>& ids, const PutBackDone& done)
{
    QSet<QUuid> known;
    for (const LapsaRecoveryItem& record : m_store.recoveryItems()) {
        known.insert(record.id);
    }
    if (!std::ranges::all_of(ids, [&known](const QUuid& id) { return known.contains(id); })) {
        return false;
    }
    // What hung is heard of again: by then the answer has been given.
    const auto answered = std::make_shared<bool>(false);
    m_store.putBack(ids, [done, answered](const QList<RecoveryResult>& results) {
        if (!std::exchange(*answered, true)) {
            done(results);
        }
    });
    return true;
}

void ListService::compareSoon()
{
    if (!m_comparison) {
        m_comparison = m_queue.asyncAfter(betweenSignals, [this] { compare(); });
    }
}

void ListService::compare()
{
    m_comparison.reset();
    const std::size_t items = markOf(m_store.items());
    const std::size_t records = markOf(m_store.recoveryItems());
    if (std::exchange(m_itemsSeen, items) != items) {
        emit itemsChanged();
    }
    if (std::exchange(m_recordsSeen, records) != records) {
        emit recoveryChanged();
    }
}

} // namespace lapsa
