// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LiveEngine.h"

#include "BenchFiles.h"
#include "FileName.h"
#include "JSONEncoder.h"

#include <chrono>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

LiveEngine::~LiveEngine()
{
    m_lanes.finish(10s);
    m_service.reset();
    m_store.reset();
    removeTree(m_home.path({}));
}

void LiveEngine::list(const QStringList& paths, std::int64_t minutes) const
{
    const TimePoint now = m_clock.now();
    QList<LapsaItem> items;
    for (const QString& path : paths) {
        items.push_back({.id = newItemId(),
                         .path = path,
                         .displayName = lastPathComponent(path),
                         .addedAt = now,
                         .expiresAt = addingMinutes(now, minutes)});
    }
    m_home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
}

void LiveEngine::set(const std::function<void(LapsaSettings& settings)>& change) const
{
    LapsaSettings settings = LapsaSettings::defaults();
    change(settings);
    m_home.writeDataFile(u"settings.json"_s, JSONEncoder::lapsa().encode(settings));
}

void LiveEngine::start()
{
    m_fileWriter.emplace(m_lanes);
    m_settingsStore.emplace(m_mainQueue, *m_fileWriter);
    m_store.emplace(*m_settingsStore, LapsaStore::Environment{.clock = m_clock,
                                                              .mainQueue = m_mainQueue,
                                                              .lanes = m_lanes,
                                                              .fileWriter = *m_fileWriter,
                                                              .appearance = m_appearance,
                                                              .workspace = m_workspace,
                                                              .pasteboard = m_pasteboard});
    m_service.emplace(*m_store, m_warnings, CleanupService::Environment{.clock = m_clock, .mainQueue = m_mainQueue});
}

} // namespace lapsa::bench
