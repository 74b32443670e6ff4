// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DisposalWork.h"
#include "ItemWork.h"
#include "LaneSeries.h"
#include "LapsaItem.h"

#include <QList>
#include <QSet>
#include <QString>

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>

namespace lapsa {

class Lanes;

/// The disposals that are under way on the lanes. Main thread only.
class Disposals final
{
public:
    /// What was handled since the last time, and is to leave the list now.
    struct Handled
    {
        /// In list order, as they were handed over.
        QList<LapsaItem> items;
        /// The folders that were disposed of, standardised.
        QSet<QString> goneFolders;
        bool byHand = false;
    };

    /// Whom the lanes report to. All of it is called on the main thread.
    struct Reports
    {
        /// What became of one item. The answer: whether it was handled.
        std::function<bool(const LapsaItem& item, const DisposalOutcome& outcome)> outcome;
        /// When all of a lane that does not hang is done; again when what hung has come back.
        std::function<void(const Handled& handled)> settled;
        /// Before each copy to another file system and each removal of a folder; in bytes.
        std::function<void(std::int64_t bytes)> longWork;
    };

    /// `lanes` must outlive this object.
    explicit Disposals(Lanes& lanes);
    Disposals(const Disposals&) = delete;
    Disposals& operator=(const Disposals&) = delete;
    /// What is under way reports nothing any more.
    ~Disposals();

    /// Hands the plan's items to their lanes, in order. With lanes that run at once, everything is done on return.
    void handOver(DisposalPlan plan, const Reports& reports);

    /// Whether something is under way.
    [[nodiscard]] bool isWorking() const { return !m_underWay.empty(); }

    /// The ids of the items that are under way and were not stopped.
    [[nodiscard]] QSet<QString> ids() const;

    /// What a lane has been doing with the item for more than half a second.
    [[nodiscard]] std::optional<ItemWork> workOn(const QString& id) const;

    /// The file of the item stays where it is, as far as it is still there.
    void stop(const QString& id) { stop(QSet<QString>{id}); }

    /// The same for many at once.
    void stop(const QSet<QString>& ids);
    /// The same for the items at these standardised paths.
    void stopAt(const QSet<QString>& paths);
    /// The same for folders that hold one of these paths, judged by their text.
    void stopFoldersAbove(const QStringList& paths);
    /// The same for all that was not begun by the user's hand.
    void stopPasses();
    /// Of all that was not begun by the user's hand, nothing more begins.
    void closePasses();

private:
    struct Disposal;

    void begin(DisposalPlan plan, const QString& path, const Reports& reports);
    [[nodiscard]] LaneSeries::Step makeStep(const std::weak_ptr<Disposal>& weak,
                                            const std::shared_ptr<const DisposalPlan>& plan);
    void reported(Disposal& disposal, std::size_t order, DisposalOutcome& outcome);
    void settled(const std::shared_ptr<Disposal>& disposal);
    void forget(const std::shared_ptr<Disposal>& disposal);

    Lanes& m_lanes;
    std::list<std::shared_ptr<Disposal>> m_underWay;
};

} // namespace lapsa
