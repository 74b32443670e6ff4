// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "DebouncedTask.h"
#include "LapsaSettings.h"

#include <QObject>

namespace lapsa {

class FileWriter;

/// Owns the current settings: loads them once, publishes every change and saves it shortly afterwards. Main thread
/// only.
class SettingsStore final : public QObject
{
    Q_OBJECT

public:
    /// Starts with the defaults and loads the file at once. Queue and writer outlive the store.
    SettingsStore(MainQueue& queue, FileWriter& fileWriter);

    [[nodiscard]] const LapsaSettings& settings() const { return m_settings; }

    /// Every assignment counts as a change, even of an equal value. Does not sanitise; LapsaStore does.
    void setSettings(const LapsaSettings& settings);

    /// Reads `settings.json`. If it is missing or any part is unreadable, the defaults apply and replace it at once; a
    /// copy of it is kept.
    void load();
    /// Saves in 0.35 seconds; replaces a save that is already waiting.
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
