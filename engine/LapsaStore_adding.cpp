// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AddedLifespans.h"
#include "AppPaths.h"
#include "Clock.h"
#include "FileName.h"
#include "FileSystem.h"
#include "FoundFile.h"
#include "KnownPathsLook.h"
#include "LaneGroups.h"
#include "LaneJob.h"
#include "LaneSeries.h"
#include "MainQueue.h"

#include <QHash>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace lapsa {

namespace {

/// Finds the first item with a path. A table is built only for several look-ups; for one it does not pay.
class ItemsByPath
{
public:
    ItemsByPath(const QList<LapsaItem>& items, qsizetype expectedLookUps)
        : m_items(items)
        , m_indexed(expectedLookUps > 1)
    {
        if (!m_indexed) {
            return;
        }
        m_positions.reserve(items.size() + expectedLookUps);
        // From the back, so that the first of several equal paths wins.
        for (qsizetype position = items.size() - 1; position >= 0; --position) {
            m_positions.insert(items[position].path, position);
        }
    }

    /// The position of the first item with that path, or -1.
    [[nodiscard]] qsizetype find(const QString& path) const
    {
        if (m_indexed) {
            return m_positions.value(path, -1);
        }
        const auto found = std::ranges::find(m_items, path, &LapsaItem::path);
        return found == m_items.cend() ? -1 : found - m_items.cbegin();
    }

    void added(const QString& path, qsizetype position)
    {
        if (m_indexed) {
            m_positions.insert(path, position);
        }
    }

private:
    const QList<LapsaItem>& m_items;
    bool m_indexed;
    QHash<QString, qsizetype> m_positions;
};

/// Reads the clock twice, once for each time in the record.
LapsaItem newItem(const QString& path, std::int64_t minutes, const Clock& clock)
{
    const TimePoint addedAt = clock.now();
    return {
        .id = newItemId(),
        .path = path,
        .displayName = lastPathComponent(path),
        .addedAt = addedAt,
        .expiresAt = addingMinutes(clock.now(), minutes),
    };
}

/// Why Lapsa never takes the entry at `path`, if so.
std::optional<fileSystem::Refusal> refusalOf(const QString& path)
{
    return fileSystem::refusalOf(path, {.folder = AppPaths::applicationSupportDirectory().toLocalFile()});
}

} // namespace

/// Paths of one lane: some of those that were named.
struct LapsaStore::AskedPaths
{
    QStringList paths;
    std::vector<qsizetype> entries;
};

/// The files of one add.
struct LapsaStore::AddRound
{
    AddOptions options;
    Added added;
    std::vector<std::unique_ptr<LaneSeries>> series;
    /// By their position in the request; those that exist and are not on the list yet.
    std::map<qsizetype, FoundFile> found;
    /// The paths at which nothing exists.
    std::map<qsizetype, QString> missing;
    qsizetype waitingFor = 0;
    /// Set once the first files are on the list: later ones come from slow disks.
    bool late = false;
    std::unique_ptr<ScheduledTask> limit;
};

void LapsaStore::addFiles(const QList<QUrl>& urls)
{
    addFiles(urls, {});
}

void LapsaStore::addFiles(const QList<QUrl>& urls, const AddOptions& options, const Added& added)
{
    // Files of a disk that does not answer by then do not hold up the others.
    constexpr std::chrono::milliseconds patience{300};
    QStringList paths;
    paths.reserve(urls.size());
    for (const QUrl& url : urls) {
        if (const std::optional<QString> path = fileSystem::standardizedPath(url)) {
            paths.push_back(*path);
        }
    }
    // What is about to be taken is to stay: it gets another time as soon as it was looked at.
    m_disposals.stopAt({paths.cbegin(), paths.cend()});
    const auto round = std::make_shared<AddRound>();
    round->options = options;
    round->added = added;
    round->waitingFor = paths.size();
    if (paths.isEmpty()) {
        addSeen(round);
        return;
    }
    m_addRounds.push_back(round);
    look(round, paths);
    if (round->waitingFor > 0) {
        round->limit = m_environment.mainQueue.asyncAfter(patience, [this, weak = std::weak_ptr(round)] {
            if (const auto alive = weak.lock()) {
                addSeen(alive);
                alive->late = true;
            }
        });
    }
}

/// On a lane.
LaneSeries::Step LapsaStore::lookStep(const AskedPaths& asked, const fileSystem::KnownPaths& known,
                                      const std::weak_ptr<AddRound>& weak)
{
    const auto steps = std::make_shared<fileSystem::KnownPathsLook>(known);
    return [this, asked, steps, weak](std::size_t entry, LaneJob&) -> Lanes::Report {
        const qsizetype number = asked.entries[entry];
        const QString path = asked.paths[number];
        std::optional<FoundFile> found;
        if (const fileSystem::Status status = fileSystem::status(path); status.exists) {
            found = FoundFile{.path = path, .isDirectory = status.isDirectory};
            // Only these can be refused, so a drop of thousands of files costs one look-up each.
            found->refusal = status.isDirectory || status.isMountPoint ? refusalOf(path) : std::nullopt;
            found->steps = steps->at(path);
        }
        return [this, weak, number, path, found] {
            if (const auto alive = weak.lock()) {
                if (!found) {
                    alive->missing.emplace(number, path);
                }
                seen(alive, number, found);
            }
        };
    };
}

/// Asks the lanes about each path.
void LapsaStore::look(const std::shared_ptr<AddRound>& round, const QStringList& paths)
{
    const std::vector<LaneGroup> groups =
        groupByLane(m_environment.lanes, paths.size(), [&](qsizetype path) -> const QString& { return paths[path]; });
    for (const LaneGroup& group : groups) {
        round->series.push_back(std::make_unique<LaneSeries>(
            m_environment.lanes, LaneSeries::Plan{.path = paths[group.entries.front()],
                                                  .count = group.entries.size(),
                                                  .onlyLooks = true,
                                                  .makeStep =
                                                      [this, paths, requests = group.entries, known = m_knownPaths,
                                                       weak = std::weak_ptr(round)] {
                                                          return lookStep({paths, requests}, known, weak);
                                                      },
                                                  .settled =
                                                      [this, weak = std::weak_ptr(round)] {
                                                          const auto alive = weak.lock();
                                                          if (alive && alive->late) {
                                                              addSeen(alive);
                                                          }
                                                      }}));
    }
    for (const auto& series : round->series) {
        series->start();
    }
}

/// A lane has looked at one path of the request; `found` is empty if nothing exists there.
void LapsaStore::seen(const std::shared_ptr<AddRound>& round, qsizetype request, const std::optional<FoundFile>& found)
{
    if (found) {
        round->found.emplace(request, *found);
    }
    --round->waitingFor;
    if (round->waitingFor == 0) {
        m_addRounds.removeOne(round);
        addSeen(round);
    }
}

/// Puts on the list what has been found by now.
void LapsaStore::addSeen(const std::shared_ptr<AddRound>& round)
{
    round->limit.reset();
    QList<FoundFile> files;
    QList<AddResult::Refused> refused;
    for (const auto& [request, found] : std::exchange(round->found, {})) {
        if (found.refusal) {
            refused.push_back({.path = found.path, .reason = *found.refusal});
        } else {
            files.push_back(found);
        }
    }
    AddResult result = addFound(files, round->options);
    result.refused = std::move(refused);
    for (const auto& [request, path] : std::exchange(round->missing, {})) {
        result.missing.push_back(path);
    }
    if (round->added) {
        round->added(result);
    }
}

AddResult LapsaStore::addFound(const QList<FoundFile>& files, const AddOptions& options)
{
    if (files.isEmpty()) {
        return {};
    }
    const AddedLifespans lifespans(settings(), options);
    const Clock& clock = m_environment.clock;

    emit willChange();
    AddResult result;
    result.ids.reserve(files.size());
    ItemsByPath known(m_items, files.size());
    for (const FoundFile& file : files) {
        m_knownPaths.note(file.path, file.steps);
        const std::int64_t minutes = lifespans.minutesFor(lastPathComponent(file.path), file.isDirectory);
        if (const qsizetype position = known.find(file.path); position >= 0) {
            LapsaItem& item = m_items[position];
            m_disposals.stop(item.id);
            item.expiresAt = addingMinutes(clock.now(), minutes);
            item.fiveMinuteWarningSent = false;
            result.ids.push_back(item.id);
            continue;
        }
        known.added(file.path, m_items.size());
        m_items.push_back(newItem(file.path, minutes, clock));
        result.ids.push_back(m_items.constLast().id);
        if (file.isDirectory) {
            result.newFolders.push_back(file.path);
        }
    }
    m_lastMessage.reset();
    saveSoon();
    return result;
}

} // namespace lapsa
