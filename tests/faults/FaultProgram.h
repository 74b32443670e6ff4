// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "CleanupService.h"
#include "EngineLanes.h"
#include "FileWriter.h"
#include "LapsaStore.h"
#include "ManualTime.h"
#include "Recorders.h"
#include "SettingsStore.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>

namespace lapsa::test {

/// The engine as the program wires it, in the user's home, with a clock moved by hand. Tells the version log of every
/// version of its lists.
class FaultProgram final
{
public:
    /// So long after the moment at which a clock moved by hand starts.
    explicit FaultProgram(std::chrono::minutes later = {}, EngineLanes::Threads threads = EngineLanes::Threads::No);

    /// Comes up as the program does, its first pass included.
    void start();
    /// Comes up without a pass, as far as the windows may be used.
    void load();
    /// One pass, and the saves after it.
    void pass();
    void change(const std::function<void(LapsaStore&)>& change);
    void changeSettings(const std::function<void(LapsaSettings&)>& change);
    /// Puts files on countdown for a minute.
    void add(const QStringList& paths);

    /// Moves the clock alone: nothing runs by it.
    void letTimePass(std::chrono::minutes minutes) { m_time.setClock(m_time.now() + minutes); }

    void quit();

    [[nodiscard]] LapsaStore& store() { return *m_store; }

private:
    /// Tells what the lists are now, and lets their saves pass.
    void settle();
    /// Waits for the lanes.
    void settleLanes();
    void save();
    /// As the program ends when it is told to, whatever is under way.
    [[noreturn]] void endNow();
    void noteVersions() const;

    ManualTime m_time;
    EngineLanes m_lanes;
    FileWriter m_fileWriter{m_lanes.lanes()};
    RecordingAppearance m_appearance;
    RecordingWorkspace m_workspace;
    RecordingPasteboard m_pasteboard;
    RecordingWarnings m_warnings;
    std::optional<SettingsStore> m_settingsStore;
    std::optional<LapsaStore> m_store;
    std::optional<CleanupService> m_cleanup;
};

} // namespace lapsa::test
