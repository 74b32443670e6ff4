// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Disposals.h"

#include "FileSystem.h"
#include "Freeing.h"
#include "LaneGroups.h"
#include "LaneJob.h"
#include "LaneSeries.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace lapsa {

namespace {

/// Shorter work is not worth showing.
constexpr std::chrono::milliseconds soon{500};

std::unique_ptr<std::atomic<bool>[]> stopsFor(qsizetype orders) // NOLINT(modernize-avoid-c-arrays)
{
    return std::make_unique<std::atomic<bool>[]>(std::size_t(orders)); // NOLINT(modernize-avoid-c-arrays)
}

} // namespace

/// The disposals of one hand-over on one lane.
struct Disposals::Disposal
{
    std::shared_ptr<DisposalPlan> plan;
    Reports reports;
    std::unique_ptr<LaneSeries> series;
    /// By order.
    std::vector<bool> reported;
    /// From here on, nothing will begin.
    std::size_t end = 0;
    Handled handled;
    /// The orders of the handled items.
    std::vector<std::size_t> handledOrders;

    [[nodiscard]] bool isUnderWay(std::size_t order) const
    {
        return order < end && !reported[order] && !plan->stops[order];
    }
};

Disposals::Disposals(Lanes& lanes)
    : m_lanes(lanes)
{}

Disposals::~Disposals() = default;

void Disposals::handOver(DisposalPlan plan, const Reports& reports)
{
    const QList<LapsaItem>& items = plan.items;
    const std::vector<LaneGroup> groups =
        groupByLane(m_lanes, items.size(), [&](qsizetype item) -> const QString& { return items[item].path; });
    if (groups.size() == 1) {
        begin(std::move(plan), groups.front().path, reports);
        return;
    }
    for (const LaneGroup& group : groups) {
        DisposalPlan part{.items = {},
                          .way = plan.way,
                          .byHand = plan.byHand,
                          .lockedPaths = plan.lockedPaths,
                          .lockedPlaces = plan.lockedPlaces,
                          .knownPaths = plan.knownPaths,
                          .recoveryNames = plan.recoveryNames,
                          .stops = nullptr};
        for (const qsizetype item : group.entries) {
            part.items.push_back(items[item]);
        }
        begin(std::move(part), group.path, reports);
    }
}

void Disposals::begin(DisposalPlan plan, const QString& path, const Reports& reports)
{
    const auto count = std::size_t(plan.items.size());
    plan.stops = stopsFor(plan.items.size());
    const auto disposal = std::make_shared<Disposal>();
    disposal->plan = std::make_shared<DisposalPlan>(std::move(plan));
    disposal->reports = reports;
    disposal->reported.resize(count);
    disposal->end = count;
    disposal->handled.byHand = disposal->plan->byHand;
    m_underWay.push_back(disposal);

    disposal->series = std::make_unique<LaneSeries>(
        m_lanes, LaneSeries::Plan{.path = path,
                                  .count = count,
                                  .makeStep = [this, weak = std::weak_ptr(disposal),
                                               plan = disposal->plan] { return makeStep(weak, plan); },
                                  .settled =
                                      [this, weak = std::weak_ptr(disposal)] {
                                          if (const auto alive = weak.lock()) {
                                              settled(alive);
                                          }
                                      }});
    disposal->series->start();
}

/// On the lane. What is told is heard only while the disposal is under way, and with it this object.
LaneSeries::Step Disposals::makeStep(const std::weak_ptr<Disposal>& weak,
                                     const std::shared_ptr<const DisposalPlan>& plan)
{
    const auto current = std::make_shared<LaneJob*>(nullptr);
    const auto work = std::make_shared<DisposalWork>(plan, [weak, current](std::int64_t bytes) {
        (*current)->tell([weak, bytes] {
            if (const auto alive = weak.lock()) {
                alive->reports.longWork(bytes);
            }
        });
    });
    return [this, weak, current, work](std::size_t order, LaneJob& job) -> Lanes::Report {
        *current = &job;
        return [this, weak, order, outcome = work->dispose(order, job)]() mutable {
            if (const auto alive = weak.lock()) {
                reported(*alive, order, outcome);
            }
        };
    };
}

void Disposals::reported(Disposal& disposal, std::size_t order, DisposalOutcome& outcome)
{
    outcome.cameTooLate = disposal.plan->stops[order];
    disposal.reported[order] = true;
    const LapsaItem& item = disposal.plan->items[qsizetype(order)];
    if (!disposal.reports.outcome(item, outcome)) {
        return;
    }
    disposal.handledOrders.push_back(order);
    if (outcome.fate == DisposalOutcome::Fate::Done && outcome.wasFolder) {
        disposal.handled.goneFolders.insert(fileSystem::standardizedPath(item.path).value_or(item.path));
    }
}

void Disposals::settled(const std::shared_ptr<Disposal>& disposal)
{
    const bool done = disposal->series->isDone();
    if (done) {
        forget(disposal);
    }
    Handled handled =
        std::exchange(disposal->handled, {.items = {}, .goneFolders = {}, .byHand = disposal->handled.byHand});
    // What hung before comes last.
    std::vector<std::size_t> orders = std::exchange(disposal->handledOrders, {});
    std::ranges::sort(orders);
    handled.items.reserve(qsizetype(orders.size()));
    for (const std::size_t order : orders) {
        handled.items.push_back(disposal->plan->items[qsizetype(order)]);
    }
    disposal->reports.settled(handled);
    if (done && handled.items.size() > soonFreed) {
        freeOnALane(m_lanes, std::pair(std::move(disposal->plan), std::move(handled)));
    }
}

void Disposals::forget(const std::shared_ptr<Disposal>& disposal)
{
    m_underWay.remove(disposal);
}

QSet<QString> Disposals::ids() const
{
    QSet<QString> ids;
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        for (std::size_t order = 0; order < disposal->end; ++order) {
            if (disposal->isUnderWay(order)) {
                ids.insert(disposal->plan->items[qsizetype(order)].id);
            }
        }
    }
    return ids;
}

std::optional<ItemWork> Disposals::workOn(const QString& id) const
{
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        for (const LaneSeries::Working& working : disposal->series->working()) {
            if (working.since < soon || disposal->plan->items[qsizetype(working.entry)].id != id) {
                continue;
            }
            if (working.job->state() == LaneJob::State::Hanging) {
                return ItemWork{.kind = ItemWork::Kind::WaitingForDisk};
            }
            const bool removes = disposal->plan->way == DisposalWay::ForGood;
            return ItemWork{.kind = removes ? ItemWork::Kind::Removing : ItemWork::Kind::Moving,
                            .done = working.job->done(),
                            .total = working.job->total()};
        }
    }
    return std::nullopt;
}

void Disposals::stop(const QSet<QString>& ids)
{
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        for (std::size_t order = 0; order < disposal->end; ++order) {
            if (ids.contains(disposal->plan->items[qsizetype(order)].id)) {
                disposal->plan->stops[order] = true;
            }
        }
    }
}

void Disposals::stopAt(const QSet<QString>& paths)
{
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        for (std::size_t order = 0; order < disposal->end; ++order) {
            if (paths.contains(disposal->plan->items[qsizetype(order)].path)) {
                disposal->plan->stops[order] = true;
            }
        }
    }
}

void Disposals::stopFoldersAbove(const QStringList& paths)
{
    QSet<QStringView> folders;
    for (const QString& path : paths) {
        QStringView folder = path;
        do {
            folder = folder.left(folder.lastIndexOf(u'/'));
            const qsizetype known = folders.size();
            folders.insert(folder);
            if (folders.size() == known) {
                break; // and those above it
            }
        } while (!folder.isEmpty());
    }
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        for (std::size_t order = 0; order < disposal->end; ++order) {
            if (folders.contains(disposal->plan->items[qsizetype(order)].path)) {
                disposal->plan->stops[order] = true;
            }
        }
    }
}

void Disposals::stopPasses()
{
    closePasses();
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        for (std::size_t order = 0; order < disposal->end && !disposal->plan->byHand; ++order) {
            disposal->plan->stops[order] = true;
        }
    }
}

void Disposals::closePasses()
{
    for (const std::shared_ptr<Disposal>& disposal : m_underWay) {
        if (!disposal->plan->byHand) {
            disposal->end = disposal->series->close();
        }
    }
}

} // namespace lapsa
