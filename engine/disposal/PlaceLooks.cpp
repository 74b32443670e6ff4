// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlaceLooks.h"

#include "LaneGroups.h"
#include "LaneJob.h"
#include "LaneSeries.h"
#include "MainQueue.h"

#include <QSet>

#include <chrono>
#include <cstddef>
#include <set>
#include <utility>
#include <vector>

namespace lapsa {

namespace {

/// Long enough for a disk that must spin up first.
constexpr std::chrono::seconds patience{5};

} // namespace

struct PlaceLooks::Round
{
    QSet<QString> waitingFor;
    QList<SeenPlace> seen;
    /// Empty once it has been called.
    std::function<void(const QList<SeenPlace>&)> then;
    std::vector<std::unique_ptr<LaneSeries>> series;
    std::unique_ptr<ScheduledTask> limit;

    void finish()
    {
        limit.reset();
        if (const auto call = std::exchange(then, {})) {
            call(seen);
        }
    }
};

struct PlaceLooks::State
{
    std::set<std::shared_ptr<Round>> rounds;
    /// Paths that were asked about and have not answered in time.
    QSet<QString> silent;
};

PlaceLooks::PlaceLooks(Lanes& lanes, MainQueue& mainQueue)
    : m_lanes(lanes)
    , m_mainQueue(mainQueue)
    , m_state(std::make_shared<State>())
{}

PlaceLooks::~PlaceLooks() = default;

void PlaceLooks::look(const QStringList& paths, std::function<void(const QList<SeenPlace>& seen)> then)
{
    auto round = std::make_shared<Round>();
    round->then = std::move(then);
    QStringList asked;
    for (const QString& path : paths) {
        if (path.startsWith(u'/') && !m_state->silent.contains(path) && !round->waitingFor.contains(path)) {
            round->waitingFor.insert(path);
            asked.push_back(path);
        }
    }
    if (asked.isEmpty()) {
        round->finish();
        return;
    }
    m_state->rounds.insert(round);
    begin(round, asked);
    if (!round->then) {
        return;
    }
    round->limit = m_mainQueue.asyncAfter(patience, [state = std::weak_ptr(m_state), weak = std::weak_ptr(round)] {
        const auto alive = state.lock();
        const auto late = weak.lock();
        if (alive && late) {
            alive->silent.unite(late->waitingFor);
            late->finish();
        }
    });
}

void PlaceLooks::begin(const std::shared_ptr<Round>& round, const QStringList& paths)
{
    for (const LaneGroup& group :
         groupByLane(m_lanes, paths.size(), [&](qsizetype entry) -> const QString& { return paths[entry]; })) {
        QStringList asked;
        for (const qsizetype entry : group.entries) {
            asked.push_back(paths[entry]);
        }
        const auto makeStep = [asked, state = std::weak_ptr(m_state), weak = std::weak_ptr(round)]() {
            return [asked, state, weak, look = std::make_shared<PlaceLook>()](std::size_t entry,
                                                                              LaneJob&) -> Lanes::Report {
                const QString& path = asked[qsizetype(entry)];
                return [state, weak, path, seen = look->at(path)] {
                    const auto alive = state.lock();
                    const auto asking = weak.lock();
                    if (!alive || !asking) {
                        return;
                    }
                    if (seen) {
                        asking->seen.push_back(*seen);
                    }
                    answered(*alive, asking, path);
                };
            };
        };
        round->series.push_back(
            std::make_unique<LaneSeries>(m_lanes, LaneSeries::Plan{.path = group.path,
                                                                   .count = std::size_t(asked.size()),
                                                                   .onlyLooks = true,
                                                                   .makeStep = makeStep,
                                                                   .settled = [] {}}));
    }
    for (const auto& series : round->series) {
        series->start();
    }
}

void PlaceLooks::answered(State& state, const std::shared_ptr<Round>& round, const QString& path)
{
    state.silent.remove(path);
    round->waitingFor.remove(path);
    if (round->waitingFor.isEmpty()) {
        state.rounds.erase(round);
        round->finish();
    }
}

} // namespace lapsa
