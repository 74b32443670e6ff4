// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CleanupService.h"
#include "FileWriter.h"
#include "LapsaStore.h"
#include "QtMainQueue.h"
#include "Recorders.h"
#include "SettingsStore.h"
#include "SystemClock.h"
#include "TemporaryHome.h"
#include "ThreadLanes.h"

#include <QStringList>

#include <functional>
#include <optional>

namespace lapsa::bench {

/// The engine as the program runs it, with its threads, the main loop and the clock, in a home of its own.
class LiveEngine final
{
public:
    LiveEngine() = default;
    LiveEngine(const LiveEngine&) = delete;
    LiveEngine& operator=(const LiveEngine&) = delete;
    ~LiveEngine();

    [[nodiscard]] const test::TemporaryHome& home() const { return m_home; }

    /// Before start(): what `state.json` holds. The time of the items runs out in so many minutes; below 0, it has.
    void list(const QStringList& paths, std::int64_t minutes) const;
    /// Before start(): changes the settings.
    void set(const std::function<void(LapsaSettings& settings)>& change) const;

    /// Comes up without a pass.
    void start();

    [[nodiscard]] LapsaStore& store() { return *m_store; }

    /// One pass, as once a minute.
    void pass() { m_service->tick(); }

private:
    test::TemporaryHome m_home;
    SystemClock m_clock;
    QtMainQueue m_mainQueue;
    ThreadLanes m_lanes{m_mainQueue};
    test::RecordingAppearance m_appearance;
    test::RecordingWorkspace m_workspace;
    test::RecordingPasteboard m_pasteboard;
    test::RecordingWarnings m_warnings;
    std::optional<FileWriter> m_fileWriter;
    std::optional<SettingsStore> m_settingsStore;
    std::optional<LapsaStore> m_store;
    std::optional<CleanupService> m_service;
};

} // namespace lapsa::bench
