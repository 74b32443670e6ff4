// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CleanupService.h"
#include "Recorders.h"
#include "StoreWorld.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <chrono>
#include <optional>
#include <random>

namespace lapsa::test {

/// The store and the service that drives it, with a user who never rests: a thousand items, and files that are added,
/// found in a watched folder, locked, restored, removed by hand, trashed. Where each file has to be is written down
/// from what the user did and what the store says; the disk has to agree.
class ComingsAndGoings final
{
public:
    ComingsAndGoings();

    /// 24 hours, with a pass every minute and a visit every half an hour; then what is pending is saved and compared.
    void liveOneDay();
    /// The user empties the Trash.
    void emptyTrash();

    /// What was not as promised so far, one line each; empty when all was.
    [[nodiscard]] QStringList faults() const { return m_faults; }

    /// How many files there have been.
    [[nodiscard]] int files() const { return m_serial; }

    [[nodiscard]] StoreWorld& world() { return m_world; }

private:
    /// A file, by what is written in it.
    using Serial = int;

    void visit(int visitOfTheDay);
    void changeSettings(int hour);
    void refill();
    void touchItems();
    void touchRecords();
    void putOnCountdownAgain();
    void restoreOne();
    [[nodiscard]] QString newFile(const QString& folder);

    void liveUntilTheNextVisit();
    void followItems(const QList<LapsaItem>& before);
    void followRecords(const QList<LapsaRecoveryItem>& before);
    void followDisposal(const LapsaItem& item);
    [[nodiscard]] static Serial serialIn(const QString& path);
    void compareWithDisk();
    void compareWithSavedLists();

    void require(bool kept, const QString& promise);
    [[nodiscard]] int random(int below);
    [[nodiscard]] LapsaItem anyItem();

    StoreWorld m_world;
    RecordingWarnings m_warnings;
    std::optional<CleanupService> m_service;
    /// The same year in every run.
    std::mt19937 m_generator{20260301};
    Serial m_serial = 0;
    /// What the saving at the end of a day has taken of the next one, so that no pass falls into it.
    std::chrono::seconds m_savingTime{0};
    /// Where every file is that is neither gone nor in the Trash.
    QHash<QString, Serial> m_places;
    QSet<Serial> m_trashed;
    /// Files that left the list and stayed where they were.
    QStringList m_ordinary;
    QStringList m_faults;
};

} // namespace lapsa::test
