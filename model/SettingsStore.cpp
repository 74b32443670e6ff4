// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SettingsStore.h"

#include "AppPaths.h"
#include "FileSystem.h"
#include "FileWriter.h"
#include "JSONDecoder.h"
#include "JSONEncoder.h"
#include "KeptFiles.h"
#include "SystemLog.h"

#include <chrono>
#include <optional>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds saveDelay{350};

std::optional<LapsaSettings> storedSettings()
{
    const Result<QByteArray> bytes = fileSystem::read(AppPaths::settingsURL().toLocalFile());
    return bytes ? JSONDecoder::lapsa().decode<LapsaSettings>(bytes.value()) : std::nullopt;
}

} // namespace

SettingsStore::SettingsStore(MainQueue& queue, FileWriter& fileWriter)
    : m_fileWriter(fileWriter)
    , m_saveWorkItem(queue, saveDelay, [this] { saveNow(); })
{
    load();
}

void SettingsStore::setSettings(const LapsaSettings& settings)
{
    m_settings = settings;
    emit settingsChanged(m_settings);
    scheduleSave();
}

void SettingsStore::load()
{
    if (const std::optional<LapsaSettings> stored = storedSettings()) {
        setSettings(*stored);
        return;
    }
    keepCopyOf(AppPaths::settingsURL().toLocalFile());
    setSettings(LapsaSettings::defaults());
    saveNow();
}

void SettingsStore::scheduleSave()
{
    m_saveWorkItem.schedule();
}

void SettingsStore::saveNow()
{
    m_saveWorkItem.cancel();
    m_fileWriter.write(
        AppPaths::settingsURL().toLocalFile(),
        [settings = m_settings] { return JSONEncoder::lapsa().encode(settings); },
        [](const FileError& error) { systemLog(u"Lapsa settings save failed: "_s + error.description); });
}

bool SettingsStore::savePending() const
{
    return m_saveWorkItem.pending();
}

} // namespace lapsa
