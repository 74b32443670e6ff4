// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaStore.h"

#include "AppPaths.h"
#include "Appearance.h"
#include "Clock.h"
#include "FileWriter.h"
#include "JSONEncoder.h"
#include "MainQueue.h"
#include "RecoveryNames.h"
#include "SettingsStore.h"
#include "SystemLog.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::milliseconds saveDelay{300};
constexpr std::chrono::milliseconds recoverySaveDelay{350};

FileWriter::Failure logged(const QString& what)
{
    return [what](const FileError& error) { systemLog(what + u": "_s + error.description); };
}

} // namespace

LapsaStore::LapsaStore(SettingsStore& settingsStore, const Environment& environment)
    : m_settingsStore(settingsStore)
    , m_environment(environment)
    , m_knownPaths(AppPaths::knownPathsURL().toLocalFile())
    , m_saveWorkItem(environment.mainQueue, saveDelay, [this] { saveNow(); })
    , m_recoverySaveWorkItem(environment.mainQueue, recoverySaveDelay, [this] { saveRecoveryNow(); })
    , m_placeLooks(environment.lanes, environment.mainQueue)
    , m_recoveryNames(std::make_shared<RecoveryNames>())
    , m_disposals(environment.lanes)
    , m_recoveryActions(environment.lanes)
{
    setSettings(settings());
    subscribeToSettings();
    applyCurrentTheme();
    loadItems();
    loadRecoveryItems();
    tidyRecovery();
}

LapsaStore::~LapsaStore() = default;

void LapsaStore::setLastMessage(const std::optional<QString>& message)
{
    emit willChange();
    m_lastMessage = message;
}

const LapsaSettings& LapsaStore::settings() const
{
    return m_settingsStore.settings();
}

void LapsaStore::setSettings(const LapsaSettings& settings)
{
    m_settingsStore.setSettings(sanitize(settings));
    m_settingsStore.scheduleSave();
}

void LapsaStore::saveNow()
{
    finishAdding();
    m_saveWorkItem.cancel();
    saveKnownPaths(); // first, so that no saved item lacks what is known about its path
    // Before the items: until its record is on disk, the next start finds there what a copy in Recovery is.
    writeRecords();
    m_environment.fileWriter.write(
        AppPaths::stateURL().toLocalFile(), [items = m_items] { return JSONEncoder::lapsa().encode(items); },
        logged(u"Lapsa state save failed"_s));
}

void LapsaStore::saveKnownPaths()
{
    if (!m_knownPaths.isEmpty()) {
        QSet<QString> paths;
        QSet<QString> folders;
        for (const LapsaItem& item : std::as_const(m_items)) {
            paths.insert(item.path);
        }
        for (const LapsaAutoCleanFolderRule& rule : settings().autoCleanFolders) {
            folders.insert(rule.folderPath);
        }
        m_knownPaths.keepOnly(paths, folders);
    }
    if (!m_knownPaths.takeChanges()) {
        return;
    }
    m_environment.fileWriter.write(
        AppPaths::knownPathsURL().toLocalFile(), [known = m_knownPaths] { return known.content(); },
        [store = QPointer(this)](const FileError& error) {
            logged(u"Lapsa state save failed"_s)(error);
            if (store) {
                store->m_knownPaths.changesWereLost();
            }
        });
}

void LapsaStore::saveSoon()
{
    m_saveWorkItem.schedule();
}

void LapsaStore::saveRecoveryNow()
{
    if (m_environment.fileWriter.isWaiting(AppPaths::stateURL().toLocalFile())) {
        saveNow(); // else the items would come before the records
    } else {
        writeRecords();
    }
}

void LapsaStore::writeRecords()
{
    m_recoverySaveWorkItem.cancel();
    m_recordUnsavedSince.reset();
    m_environment.fileWriter.write(
        AppPaths::recoveryStateURL().toLocalFile(),
        [records = m_recoveryItems] { return JSONEncoder::lapsa().encode(records); },
        logged(u"Lapsa recovery save failed"_s));
}

void LapsaStore::saveRecoverySoon()
{
    m_recoverySaveWorkItem.schedule();
}

void LapsaStore::applyAppTheme(LapsaTheme theme)
{
    switch (theme) {
    case LapsaTheme::System:
        m_environment.appearance.setForcedScheme(std::nullopt);
        return;
    case LapsaTheme::Dark:
        m_environment.appearance.setForcedScheme(ColorScheme::Dark);
        return;
    case LapsaTheme::Light:
        m_environment.appearance.setForcedScheme(ColorScheme::Light);
        return;
    }
}

void LapsaStore::applyCurrentTheme()
{
    applyAppTheme(settings().theme);
}

void LapsaStore::subscribeToSettings()
{
    connect(&m_settingsStore, &SettingsStore::settingsChanged, this, &LapsaStore::reactToSettings);
    // A new subscriber also receives the current value.
    reactToSettings(settings());
}

// Deferred: whoever changes the settings has finished by then. Existing lifespans stay, and nothing is saved.
void LapsaStore::reactToSettings(const LapsaSettings& changed)
{
    stopWhatIsNotWanted(changed);
    m_environment.mainQueue.async([store = QPointer(this), theme = changed.theme] {
        if (store) {
            store->applyAppTheme(theme);
            emit store->willChange();
        }
    });
}

/// Files that wait for their turn on a lane go the way that the settings say by then, or stay while everything is
/// paused.
void LapsaStore::stopWhatIsNotWanted(const LapsaSettings& changed)
{
    const bool sameWay = std::exchange(m_usedRecoveryWindow, changed.useRecoveryWindow) == changed.useRecoveryWindow &&
                         std::exchange(m_usedTrash, changed.useTrash) == changed.useTrash;
    if (!m_disposals.isWorking()) {
        return;
    }
    if (changed.pauseAllCountdowns) {
        m_disposals.stopPasses();
    } else if (!sameWay) {
        m_disposals.closePasses();
        m_environment.mainQueue.async([store = QPointer(this)] {
            if (store) {
                store->deleteExpiredItems();
            }
        });
    }
}

} // namespace lapsa
