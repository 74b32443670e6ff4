// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryActions.h"

#include "AppPaths.h"
#include "LaneGroups.h"
#include "LaneJob.h"
#include "Lanes.h"

#include <QHash>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <utility>
#include <vector>

namespace lapsa {

namespace {

/// Shorter work is not worth showing.
constexpr std::chrono::milliseconds soon{500};

} // namespace

/// What one lane does of a round.
struct RecoveryActions::Part
{
    std::shared_ptr<RecoveryPlan> plan;
    /// For each record, its position in the round.
    std::vector<qsizetype> orders;
    std::unique_ptr<LaneSeries> series;
    bool settled = false;
};

/// What was asked for in one go.
struct RecoveryActions::Round
{
    Reports reports;
    std::vector<std::unique_ptr<Part>> parts;
    /// By position; nothing for what is under way.
    std::vector<std::optional<RecoveryResult>> results;
    /// What became of it since the last time that results were told.
    std::vector<bool> untold;
    /// The positions of what is under way.
    QHash<QUuid, std::pair<const Part*, std::size_t>> underWay;

    [[nodiscard]] QList<RecoveryResult> takeUntold();
    [[nodiscard]] bool isDone() const;
};

QList<RecoveryResult> RecoveryActions::Round::takeUntold()
{
    QList<RecoveryResult> news;
    for (std::size_t order = 0; order < results.size(); ++order) {
        if (untold[order]) {
            news.push_back(*results[order]);
            untold[order] = false;
        }
    }
    return news;
}

bool RecoveryActions::Round::isDone() const
{
    return std::ranges::all_of(parts, [](const std::unique_ptr<Part>& part) { return part->series->isDone(); });
}

RecoveryActions::RecoveryActions(Lanes& lanes)
    : m_lanes(lanes)
{}

RecoveryActions::~RecoveryActions() = default;

void RecoveryActions::handOver(const RecoveryPlan& plan, const Reports& reports)
{
    const QString recovery = AppPaths::recoveryDirectory().toLocalFile();
    const std::vector<LaneGroup> groups =
        groupByLane(m_lanes, plan.records.size(), [&](qsizetype record) -> const QString& {
            return plan.way == RecoveryWay::PutBack ? plan.records[record].originalPath : recovery;
        });
    const auto round = std::make_shared<Round>();
    round->reports = reports;
    round->results.resize(std::size_t(plan.records.size()));
    round->untold.resize(std::size_t(plan.records.size()));
    m_rounds.push_back(round);
    for (const LaneGroup& group : groups) {
        addPart(round, plan, group);
    }
    for (const std::unique_ptr<Part>& part : round->parts) {
        part->series->start();
    }
}

void RecoveryActions::addPart(const std::shared_ptr<Round>& round, const RecoveryPlan& plan, const LaneGroup& group)
{
    const std::size_t count = group.entries.size();
    auto lanePlan = std::make_shared<RecoveryPlan>(RecoveryPlan{
        .records = {},
        .way = plan.way,
        .names = plan.names,
        .stops = std::make_unique<std::atomic<bool>[]>(count), // NOLINT(modernize-avoid-c-arrays)
    });
    auto part = std::make_unique<Part>();
    for (const qsizetype record : group.entries) {
        round->underWay.insert(plan.records[record].id, {part.get(), std::size_t(lanePlan->records.size())});
        lanePlan->records.push_back(plan.records[record]);
    }
    part->plan = lanePlan;
    part->orders = group.entries;
    const auto heard = [this, weak = std::weak_ptr(round)] {
        if (const auto alive = weak.lock()) {
            settled(alive);
        }
    };
    part->series = std::make_unique<LaneSeries>(
        m_lanes, LaneSeries::Plan{.path = group.path,
                                  .count = count,
                                  .makeStep = [plan = part->plan, weak = std::weak_ptr(round),
                                               orders = part->orders] { return makeStep(plan, weak, orders); },
                                  .settled =
                                      [part = part.get(), heard] {
                                          part->settled = true;
                                          heard();
                                      }});
    round->parts.push_back(std::move(part));
}

/// On the lane.
LaneSeries::Step RecoveryActions::makeStep(const std::shared_ptr<const RecoveryPlan>& plan,
                                           const std::weak_ptr<Round>& weak, const std::vector<qsizetype>& orders)
{
    const auto current = std::make_shared<LaneJob*>(nullptr);
    const auto work = std::make_shared<RecoveryWork>(plan, [weak, current] {
        (*current)->tell([weak] {
            if (const auto alive = weak.lock()) {
                alive->reports.longWork();
            }
        });
    });
    return [weak, current, work, orders](std::size_t number, LaneJob& job) -> Lanes::Report {
        *current = &job;
        return [weak, order = std::size_t(orders[number]), result = work->run(number, job)] {
            if (const auto alive = weak.lock()) {
                alive->underWay.remove(result.id);
                alive->results[order] = result;
                alive->untold[order] = true;
                alive->reports.result(result);
            }
        };
    };
}

/// A lane has done all that it can do for now.
void RecoveryActions::settled(const std::shared_ptr<Round>& round)
{
    if (!std::ranges::all_of(round->parts, [](const std::unique_ptr<Part>& part) { return part->settled; })) {
        return;
    }
    const auto done = round->reports.done;
    const QList<RecoveryResult> news = round->takeUntold();
    if (round->isDone()) {
        m_rounds.remove(round);
    }
    done(news);
}

bool RecoveryActions::isUnderWay(const QUuid& id) const
{
    return std::ranges::any_of(m_rounds,
                               [&](const std::shared_ptr<Round>& round) { return round->underWay.contains(id); });
}

std::optional<ItemWork> RecoveryActions::workOn(const QUuid& id) const
{
    for (const std::shared_ptr<Round>& round : m_rounds) {
        const auto found = round->underWay.constFind(id);
        if (found == round->underWay.cend()) {
            continue;
        }
        const auto& [part, number] = *found;
        for (const LaneSeries::Working& working : part->series->working()) {
            if (working.entry != number || working.since < soon) {
                continue;
            }
            if (working.job->state() == LaneJob::State::Hanging) {
                return ItemWork{.kind = ItemWork::Kind::WaitingForDisk};
            }
            const bool removes = part->plan->way == RecoveryWay::Delete;
            return ItemWork{.kind = removes ? ItemWork::Kind::Removing : ItemWork::Kind::Moving,
                            .done = working.job->done(),
                            .total = working.job->total()};
        }
    }
    return std::nullopt;
}

void RecoveryActions::stop(const QUuid& id)
{
    for (const std::shared_ptr<Round>& round : m_rounds) {
        const auto found = round->underWay.constFind(id);
        if (found != round->underWay.cend()) {
            found->first->plan->stops[found->second] = true;
        }
    }
}

} // namespace lapsa
