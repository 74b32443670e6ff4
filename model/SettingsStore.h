// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DebouncedTask.h"
#include "LapsaSettings.h"

#include <QObject>

namespace lapsa {

class FileWriter;

/// Owner of the live settings: loads them once, publishes every change and saves them shortly after. Main thread only.
class SettingsStore final : public QObject
{
    Q_OBJECT

public:
    /// Starts from the defaults and loads the file at once. Queue and writer outlive the store.
    SettingsStore(MainQueue& queue, FileWriter& fileWriter);

    [[nodiscard]] const LapsaSettings& settings() const { return m_settings; }

    /// Every assignment counts as a change, the same value too. Not sanitised here: LapsaStore is where that happens.
    void setSettings(const LapsaSettings& settings);

    /// Reads `settings.json`. One that is missing or cannot be read, as a whole, gives the defaults and is replaced by
    /// them at once; a copy of it is kept.
    void load();
    /// Saves 0.35 seconds from now, in place of a save that is already waiting.
    void scheduleSave();
    /// Hands the settings to the writer at once. A failure is logged; the settings in memory stay, and the next change
    /// tries again.
    void saveNow();
    [[nodiscard]] bool savePending() const;

signals:
    void settingsChanged(const lapsa::LapsaSettings& settings);

private:
    FileWriter& m_fileWriter;
    LapsaSettings m_settings = LapsaSettings::defaults();
    DebouncedTask m_saveWorkItem;
};

} // namespace lapsa
