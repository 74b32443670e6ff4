// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileWriter.h"
#include "ItemKinds.h"
#include "LapsaStore.h"
#include "ManualLanes.h"
#include "ManualTime.h"
#include "Recorders.h"
#include "SettingsStore.h"
#include "TemporaryHome.h"

#include <functional>
#include <optional>

namespace lapsa::test {

/// The real store on real files in a home of its own, with a clock and a main queue moved by hand.
class StoreWorld
{
public:
    /// Comes up as the program does; with `run` false only what is on disk can be prepared, until start().
    explicit StoreWorld(bool run = true);

    void start();
    /// The process ends without saving, as by a kill.
    void stop();

    [[nodiscard]] FileWriter& fileWriter() { return *m_fileWriter; }

    [[nodiscard]] SettingsStore& settingsStore() { return *m_settingsStore; }

    [[nodiscard]] LapsaStore& store() { return *m_store; }

    /// Changes the settings as the preferences window does, and lets the save pass.
    void changeSettings(const std::function<void(LapsaSettings&)>& change);
    /// Puts a file on countdown for that many minutes; the answer is its item.
    LapsaItem add(const QString& path, std::int64_t minutes = 10);
    /// Adds the files; the answer is the result.
    AddResult added(const QList<QUrl>& urls);
    /// Deletes the item by hand; the answer is the outcome.
    LapsaStore::DeleteOutcome deleted(const LapsaItem& item);
    /// The item of a path as it stands in the list now; ends the test program when there is none.
    [[nodiscard]] LapsaItem item(const QString& path) const;
    /// The display names of the items, in list order.
    [[nodiscard]] QStringList listedNames() const;
    /// Lets every pending save pass.
    void letSavesPass();

    TemporaryHome home;
    ManualTime time;
    /// They run at once, until a test says otherwise.
    ManualLanes lanes{ManualLanes::Runs::AtOnce};
    ItemKinds kinds{lanes};
    RecordingAppearance appearance;
    RecordingWorkspace workspace;
    RecordingPasteboard pasteboard;

private:
    std::optional<FileWriter> m_fileWriter;
    std::optional<SettingsStore> m_settingsStore;
    std::optional<LapsaStore> m_store;
};

} // namespace lapsa::test
