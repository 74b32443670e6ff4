// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FaultProgram.h"

#include "JSONEncoder.h"
#include "VersionLog.h"

#include <unistd.h>

#include <cstdlib>

namespace lapsa::test {

using namespace std::chrono_literals;

namespace {

/// After so long without another change everything is on disk.
constexpr auto longestSaveDelay = 350ms;

} // namespace

FaultProgram::FaultProgram(std::chrono::minutes later, EngineLanes::Threads threads)
    : m_lanes(m_time, threads)
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
                                                              .lanes = m_lanes.lanes(),
                                                              .fileWriter = m_fileWriter,
                                                              .appearance = m_appearance,
                                                              .workspace = m_workspace,
                                                              .pasteboard = m_pasteboard});
    const QByteArray noRecords = JSONEncoder::lapsa().encode(QList<LapsaRecoveryItem>());
    if (m_store->recoveryItems().isEmpty() && log.count(VersionLog::Recovery) > 0 &&
        !log.isNewest(VersionLog::Recovery, noRecords)) {
        log.setRecordsLost();
    }
    m_cleanup.emplace(*m_store, m_warnings, CleanupService::Environment{.clock = m_time, .mainQueue = m_time});
    settleLanes();
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
    settleLanes();
    m_cleanup->stop();
    save();
    settleLanes();
    VersionLog::shared().promise();
}

void FaultProgram::save()
{
    noteVersions();
    m_store->saveNow();
    noteVersions();
    if (m_settingsStore->savePending()) {
        m_settingsStore->saveNow();
    }
}

void FaultProgram::settle()
{
    settleLanes();
    noteVersions();
    m_time.advance(longestSaveDelay);
    settleLanes();
    VersionLog::shared().promise();
}

void FaultProgram::settleLanes()
{
    if (!m_lanes.settle([this] { noteVersions(); })) {
        endNow();
    }
}

void FaultProgram::endNow()
{
    if (m_cleanup) {
        m_cleanup->stop();
    }
    m_lanes.lanes().awaitLooks(200ms);
    m_lanes.lanes().finish(300ms);
    save();
    if (m_fileWriter.flush(500ms)) {
        VersionLog::shared().promise();
    }
    ::_exit(EXIT_SUCCESS);
}

void FaultProgram::noteVersions() const
{
    VersionLog& log = VersionLog::shared();
    log.note(VersionLog::Settings, JSONEncoder::lapsa().encode(m_store->settings()));
    log.note(VersionLog::State, JSONEncoder::lapsa().encode(m_store->items()));
    log.note(VersionLog::Recovery, JSONEncoder::lapsa().encode(m_store->recoveryItems()));
}

} // namespace lapsa::test
