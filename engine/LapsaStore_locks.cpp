// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneGroups.h"
#include "LaneJob.h"
#include "LaneSeries.h"
#include "LapsaStore.h"

#include <QPointer>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace lapsa {

/// Calls `then` with the paths of the locked items and where they were seen, at once if there are none.
void LapsaStore::withLockedPlaces(std::function<void(const QStringList& paths, const QList<SeenPlace>& seen)> then)
{
    QStringList paths;
    for (const LapsaItem& item : std::as_const(m_items)) {
        if (item.locked) {
            paths.push_back(item.path);
        }
    }
    m_placeLooks.look(paths, [this, paths, then = std::move(then)](const QList<SeenPlace>& seen) {
        const QSet<QString> known(paths.cbegin(), paths.cend());
        for (const LapsaItem& item : std::as_const(m_items)) {
            if (item.locked && !known.contains(item.path)) {
                withLockedPlaces(then); // locked meanwhile
                return;
            }
        }
        then(paths, seen);
    });
}

/// What is asked of the lanes about some items.
struct LapsaStore::FreeRound
{
    QList<LapsaItem> free;
    std::vector<std::unique_ptr<LaneSeries>> series;
    std::size_t settled = 0;
    std::function<void(const QList<LapsaItem>&)> found;
};

void LapsaStore::findFree(const QList<LapsaItem>& items, const std::function<void(const QList<LapsaItem>& free)>& found)
{
    withLockedPlaces([this, items, found](const QStringList& paths, const QList<SeenPlace>& seen) {
        if (paths.isEmpty()) {
            found(items);
            return;
        }
        QList<LapsaItem> asked;
        std::ranges::copy_if(items, std::back_inserter(asked),
                             [this](const LapsaItem& item) { return !m_unanswered.contains(item.id); });
        if (asked.isEmpty()) {
            found({});
            return;
        }
        const auto round = std::make_shared<FreeRound>();
        round->found = found;
        askWhatIsFree(round, asked, [paths, seen] { return std::make_shared<const ItemPlaces>(paths, seen); });
    });
}

/// On a lane.
LaneSeries::Step LapsaStore::freeStep(const QList<LapsaItem>& asked, const std::shared_ptr<const ItemPlaces>& locked,
                                      const std::weak_ptr<FreeRound>& round, const QPointer<LapsaStore>& store)
{
    return [asked, locked, round, store](std::size_t entry, LaneJob&) -> Lanes::Report {
        const LapsaItem& item = asked[qsizetype(entry)];
        return [round, store, item, held = locked->areAtOrIn(item.path)] {
            if (store) {
                store->m_unanswered.remove(item.id);
            }
            if (const auto alive = round.lock(); alive && !held) {
                alive->free.push_back(item);
            }
        };
    };
}

void LapsaStore::askWhatIsFree(const std::shared_ptr<FreeRound>& round, const QList<LapsaItem>& items,
                               const MakePlaces& makePlaces)
{
    m_freeRounds.push_back(round);
    const std::vector<LaneGroup> groups = groupByLane(
        m_environment.lanes, items.size(), [&](qsizetype item) -> const QString& { return items[item].path; });
    for (const LaneGroup& group : groups) {
        QList<LapsaItem> asked;
        for (const qsizetype item : group.entries) {
            asked.push_back(items[item]);
            m_unanswered.insert(items[item].id);
        }
        const auto settled = [this, weak = std::weak_ptr(round)] {
            if (const auto alive = weak.lock(); alive && ++alive->settled == alive->series.size()) {
                m_freeRounds.removeOne(alive);
                alive->found(alive->free);
            }
        };
        round->series.push_back(std::make_unique<LaneSeries>(
            m_environment.lanes,
            LaneSeries::Plan{
                .path = group.path,
                .count = std::size_t(asked.size()),
                .onlyLooks = true,
                .makeStep = [asked, makePlaces, weak = std::weak_ptr(round),
                             store = QPointer(this)] { return freeStep(asked, makePlaces(), weak, store); },
                .settled = settled}));
    }
    for (const auto& series : round->series) {
        series->start();
    }
}

} // namespace lapsa
