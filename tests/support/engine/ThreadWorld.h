// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AppPaths.h"
#include "FileWriter.h"
#include "LapsaStore.h"
#include "QtMainQueue.h"
#include "Recorders.h"
#include "SettingsStore.h"
#include "StoreSetup.h"
#include "SystemClock.h"
#include "ThreadLanes.h"

#include <QDir>
#include <QStringList>
#include <QTest>

#include <chrono>

namespace lapsa::test {

/// The store as the program has it: with threads, and the real time.
struct ThreadWorld
{
    /// In milliseconds.
    static constexpr int patience = 60'000;

    SystemClock clock;
    QtMainQueue mainQueue;
    ThreadLanes lanes{mainQueue};
    RecordingAppearance appearance;
    RecordingWorkspace workspace;
    RecordingPasteboard pasteboard;
    FileWriter fileWriter{lanes};
    SettingsStore settingsStore{mainQueue, fileWriter};
    LapsaStore store{settingsStore,
                     {.clock = clock,
                      .mainQueue = mainQueue,
                      .lanes = lanes,
                      .fileWriter = fileWriter,
                      .appearance = appearance,
                      .workspace = workspace,
                      .pasteboard = pasteboard}};

    ~ThreadWorld() { lanes.finish(std::chrono::seconds(10)); }

    /// Returns when they are on the list.
    void add(const QStringList& paths)
    {
        bool added = false;
        store.addFiles(urlsOf(paths), {}, [&added](const AddResult&) { added = true; });
        QTRY_VERIFY_WITH_TIMEOUT(added, patience);
    }

    /// How many entries the Recovery folder has.
    [[nodiscard]] static qsizetype copies() { return QDir(AppPaths::recoveryDirectory().toLocalFile()).count() - 2; }
};

} // namespace lapsa::test
