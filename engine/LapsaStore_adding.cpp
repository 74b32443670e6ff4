// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "FileSystem.h"
#include "FoundFile.h"
#include "KnownPathsLook.h"
#include "LaneGroups.h"
#include "LaneJob.h"
#include "LaneSeries.h"
#include "MainQueue.h"
#include "ShortTurn.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <deque>
#include <map>
#include <utility>
#include <vector>

namespace lapsa {

namespace {

/// As the files were named: a disk that does not answer lets others go first.
template <typename Files>
Files inOrder(Files files)
{
    if (!std::ranges::is_sorted(files, {}, &Files::value_type::request)) {
        std::ranges::stable_sort(files, {}, &Files::value_type::request);
    }
    return files;
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
    QList<QUrl> urls;
    /// How many of the URLs have become paths.
    qsizetype taken = 0;
    QStringList paths;
    std::vector<std::unique_ptr<LaneSeries>> series;
    /// Those that exist and are not on the list yet.
    std::deque<FoundFile> found;
    std::deque<FoundFile> refused;
    /// The paths at which nothing exists, by their position in the request.
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
    const auto round = std::make_shared<AddRound>();
    round->options = options;
    round->added = added;
    round->urls = urls;
    m_addRounds.push_back(round);
    takeIn(round);
}

/// Makes paths of the URLs, then asks the lanes about them.
void LapsaStore::takeIn(const std::shared_ptr<AddRound>& round)
{
    // Files of a disk that does not answer by then do not hold up the others.
    constexpr std::chrono::milliseconds patience{300};
    const qsizetype before = round->paths.size();
    ShortTurn turn({});
    for (; round->taken < round->urls.size() && !turn.isOver(); ++round->taken) {
        if (const std::optional<QString> path = fileSystem::standardizedPath(round->urls[round->taken])) {
            round->paths.push_back(*path);
        }
    }
    if (m_disposals.isWorking()) {
        // What is about to be taken is to stay: it gets another time as soon as it was looked at.
        m_disposals.stopAt({round->paths.cbegin() + before, round->paths.cend()});
    }
    if (round->taken < round->urls.size()) {
        m_environment.mainQueue.async([store = QPointer(this), weak = std::weak_ptr(round)] {
            if (const auto alive = weak.lock(); store && alive) {
                store->takeIn(alive);
            }
        });
        return;
    }
    round->waitingFor = round->paths.size();
    if (round->paths.isEmpty()) {
        m_addRounds.removeOne(round);
        addSeen(round);
        return;
    }
    look(round, round->paths);
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
            found = FoundFile{.request = number, .path = path, .isDirectory = status.isDirectory};
            // Only these can be refused, so a drop of thousands of files costs one look-up each.
            found->refusal = status.isDirectory || status.isMountPoint ? refusalOf(path) : std::nullopt;
            found->steps = steps->at(path);
        }
        return [this, weak, number, path, found] {
            if (const auto alive = weak.lock()) {
                if (!found) {
                    alive->missing.emplace(number, path);
                }
                seen(alive, found);
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
void LapsaStore::seen(const std::shared_ptr<AddRound>& round, const std::optional<FoundFile>& found)
{
    if (found) {
        (found->refusal ? round->refused : round->found).push_back(*found);
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
    AddResult result;
    for (const FoundFile& file : inOrder(std::exchange(round->refused, {}))) {
        result.refused.push_back({.path = file.path, .reason = *file.refusal});
    }
    for (const auto& [request, path] : std::exchange(round->missing, {})) {
        result.missing.push_back(path);
    }
    addFound(inOrder(std::exchange(round->found, {})), round->options,
             [added = round->added, others = result](AddResult found) {
                 if (added) {
                     found.refused = others.refused;
                     found.missing = others.missing;
                     added(found);
                 }
             });
}

} // namespace lapsa
