// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaStore.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <cstddef>
#include <functional>
#include <list>
#include <memory>
#include <optional>

namespace lapsa {

class MainQueue;
class ScheduledTask;

/// What other programs can ask of the store. Main thread only.
class ListService final : public QObject
{
    Q_OBJECT

public:
    /// What became of one path that was to be added.
    struct AddOutcome
    {
        QString path;
        /// As it stands on the list now.
        std::optional<LapsaItem> item = std::nullopt;
        /// Why it is never taken, if so.
        std::optional<fileSystem::Refusal> refusal = std::nullopt;
        bool nothingThere = false;
    };

    using AddDone = std::function<void(const QList<AddOutcome>& outcomes)>;
    using PutBackDone = std::function<void(const QList<RecoveryResult>& results)>;

    /// Both outlive this object.
    ListService(LapsaStore& store, MainQueue& queue);
    ListService(const ListService&) = delete;
    ListService& operator=(const ListService&) = delete;
    ~ListService() override;

    [[nodiscard]] const QList<LapsaItem>& items() const { return m_store.items(); }

    [[nodiscard]] const QList<LapsaRecoveryItem>& recovered() const { return m_store.recoveryItems(); }

    /// Adds standardised paths with that lifespan, or by rule if it is 0. Calls `done` once, with an outcome for each
    /// path, in order: when all are known, at the latest after five seconds. An outcome without any answer is of a disk
    /// that has not responded by then.
    void add(const QStringList& paths, int minutes, const AddDone& done);

    /// Whether there is such an item.
    [[nodiscard]] bool setLocked(const QString& id, bool locked);
    /// Takes the item off the list; the file stays. Whether there was such an item.
    [[nodiscard]] bool takeOffTheList(const QString& id);

    /// Whether each id has a record; otherwise nothing is done. Calls `done` once, with the results known by then:
    /// those of disks that do not respond are missing.
    [[nodiscard]] bool putBack(const QList<QUuid>& ids, const PutBackDone& done);

signals:
    /// At most four times a second, after the change.
    void itemsChanged();
    void recoveryChanged();

private:
    struct Adding;

    void noteAdded(const std::shared_ptr<Adding>& adding, const AddResult& result);
    void finish(const std::shared_ptr<Adding>& adding);
    [[nodiscard]] std::optional<LapsaItem> itemWith(const QString& id) const;
    void compareSoon();
    void compare();

    LapsaStore& m_store;
    MainQueue& m_queue;
    std::list<std::shared_ptr<Adding>> m_adding;
    std::unique_ptr<ScheduledTask> m_comparison;
    std::size_t m_itemsSeen;
    std::size_t m_recordsSeen;
};

} // namespace lapsa
