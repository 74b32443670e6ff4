// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FaultProgram.h"

#include "JSONEncoder.h"
#include "VersionLog.h"

namespace lapsa::test {

using namespace std::chrono_literals;

namespace {

/// After so long without another change everything is on disk.
constexpr auto longestSaveDelay = 350ms;

} // namespace

FaultProgram::FaultProgram(std::chrono::minutes later)
{
    letTimePass(later);
}

void FaultProgram::load()
{
    VersionLog& log = VersionLog::shared();
    log.setStarting(true);
    m_settingsStore.emplace(m_time, m_fileWriter);
    m_store.emplace(*m_settingsStore, LapsaStore::Environment{.clock = m_time,
                                                              .mainQueue = m_time,
                                                              .lanes = m_lanes,
                                                              .fileWriter = m_fileWriter,
                                                              .appearance = m_appearance,
                                                              .workspace = m_workspace,
                                                              .pasteboard = m_pasteboard});
    m_cleanup.emplace(*m_store, m_warnings, CleanupService::Environment{.clock = m_time, .mainQueue = m_time});
    noteVersions();
    log.setStarting(false);
}

void FaultProgram::start()
{
    load();
    m_cleanup->start();
    settle();
}

void FaultProgram::pass()
{
    m_cleanup->tick();
    settle();
}

void FaultProgram::change(const std::function<void(LapsaStore&)>& change)
{
    change(*m_store);
    settle();
}

void FaultProgram::changeSettings(const std::function<void(LapsaSettings&)>& change)
{
    LapsaSettings settings = m_store->settings();
    change(settings);
    m_store->setSettings(settings);
    settle();
}

void FaultProgram::add(const QStringList& paths)
{
    QList<QUrl> urls;
    for (const QString& path : paths) {
        urls.push_back(QUrl::fromLocalFile(path));
    }
    change([&urls](LapsaStore& store) { store.addFiles(urls, {.fixedLifespan = 1}); });
}

void FaultProgram::quit()
{
    m_cleanup->stop();
    noteVersions();
    m_store->saveNow();
    if (m_settingsStore->savePending()) {
        m_settingsStore->saveNow();
    }
    VersionLog::shared().promise();
}

void FaultProgram::settle()
{
    noteVersions();
    m_time.advance(longestSaveDelay);
    VersionLog::shared().promise();
}

void FaultProgram::noteVersions() const
{
    VersionLog& log = VersionLog::shared();
    log.note(VersionLog::Settings, JSONEncoder::lapsa().encode(m_store->settings()));
    log.note(VersionLog::State, JSONEncoder::lapsa().encode(m_store->items()));
    log.note(VersionLog::Recovery, JSONEncoder::lapsa().encode(m_store->recoveryItems()));
}

} // namespace lapsa::test
