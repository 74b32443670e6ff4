// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Clock.h"
#include "FileSystem.h"
#include "FoundFile.h"
#include "KnownPathsLook.h"
#include "LaneJob.h"
#include "Lanes.h"
#include "WatchedFolder.h"

#include <QPointer>
#include <QSet>
#include <QStringView>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <optional>
#include <utility>

namespace lapsa {

/// What a lane found in a watched folder.
struct LapsaStore::Scan
{
    QList<FoundFile> found;
    /// What there is to remember about the folder, if nothing was remembered.
    std::optional<fileSystem::PathSteps> folderSteps;
};

namespace {

bool isNewFor(const LapsaAutoCleanFolderRule& rule, const fileSystem::FolderEntry& entry)
{
    // Compared in whole seconds: a rule that was read from its file has lost the fraction.
    using std::chrono::floor, std::chrono::seconds;
    return rule.includeExistingFiles ||
           floor<seconds>(entry.creationDate().value_or(distantPast)) >= floor<seconds>(rule.createdAt);
}

} // namespace

void LapsaStore::scanAutoCleanFolders()
{
    if (settings().pauseAllCountdowns) {
        return;
    }
    const QList<LapsaAutoCleanFolderRule> rules = settings().autoCleanFolders;
    for (const LapsaAutoCleanFolderRule& rule : rules) {
        if (rule.enabled) {
            scanFolder(rule);
        }
    }
}

void LapsaStore::scanFolder(const LapsaAutoCleanFolderRule& rule)
{
    // A folder that has not answered yet is not asked again.
    if (rule.folderPath.isEmpty() || m_scanning.contains(rule.id)) {
        return;
    }
    m_scanning.insert(rule.id);
    const auto work = [rule, items = m_items, known = m_knownPaths,
                       store = QPointer(this)](LaneJob& job) -> Lanes::Report {
        Scan scan = scanned(rule, items, known, job);
        return [rule, store, scan = std::move(scan)] {
            if (store) {
                store->m_scanning.remove(rule.id);
                store->takeScanned(rule, scan);
            }
        };
    };
    m_environment.lanes.look(rule.folderPath, work);
}

/// On a lane.
LapsaStore::Scan LapsaStore::scanned(const LapsaAutoCleanFolderRule& rule, const QList<LapsaItem>& items,
                                     const fileSystem::KnownPaths& known, LaneJob& job)
{
    const std::optional<QString> path = watchedFolder::pathOf(rule);
    if (!path) {
        return {};
    }
    const QString folder = *path == u"/" ? QString() : *path;
    const QSet<QStringView> listed = watchedFolder::namesOnCountdown(items, *path);
    QStringList taken;
    const auto visited = fileSystem::forEachVisibleEntry(*path, known, [&](const fileSystem::FolderEntry& entry) {
        job.alive();
        // Entries that may never be taken are skipped silently: nobody asked for them.
        if (!listed.contains(entry.name()) && watchedFolder::mayBeTaken(entry.status()) && isNewFor(rule, entry)) {
            taken.push_back(folder + u'/' + entry.name());
        }
    });
    // A folder that cannot be listed completely now is scanned again in the next pass: silent on purpose.
    if (!visited) {
        return {};
    }
    Scan scan;
    fileSystem::KnownPaths remembered = known;
    if (!remembered.stepsInto(*path)) {
        scan.folderSteps = fileSystem::stepsTowards(*path); // watched before this was remembered
        remembered.noteFolder(*path, scan.folderSteps);
    }
    fileSystem::KnownPathsLook look(std::move(remembered));
    for (const QString& file : std::as_const(taken)) {
        job.alive();
        FoundFile found;
        found.path = file;
        found.steps = look.at(file);
        scan.found.push_back(found);
    }
    return scan;
}

void LapsaStore::takeScanned(const LapsaAutoCleanFolderRule& rule, const Scan& scan)
{
    // Meanwhile the user may have removed or changed the rule, or paused everything.
    if (settings().pauseAllCountdowns || !settings().autoCleanFolders.contains(rule)) {
        return;
    }
    if (scan.folderSteps) {
        m_knownPaths.noteFolder(fileSystem::standardizedPath(rule.folderPath).value_or(rule.folderPath),
                                scan.folderSteps);
        saveKnownPaths();
    }
    if (scan.found.isEmpty()) {
        return;
    }
    // A file that was added meanwhile keeps its time.
    QSet<QString> paths;
    for (const FoundFile& file : scan.found) {
        paths.insert(file.path);
    }
    for (const LapsaItem& item : std::as_const(m_items)) {
        paths.remove(item.path);
    }
    std::deque<FoundFile> taken;
    std::ranges::copy_if(scan.found, std::back_inserter(taken),
                         [&](const FoundFile& file) { return paths.contains(file.path); });
    if (!taken.empty()) {
        addFound(std::move(taken), watchedFolder::addOptions(rule), [](const AddResult&) {});
    }
}

void LapsaStore::addFileTypeRule()
{
    LapsaSettings changed = settings();
    changed.fileTypeRules.push_back({});
    setSettings(changed);
}

void LapsaStore::removeFileTypeRule(const QUuid& id)
{
    LapsaSettings changed = settings();
    changed.fileTypeRules.removeIf([&id](const LapsaFileTypeRule& rule) { return rule.id == id; });
    setSettings(changed);
}

void LapsaStore::moveFileTypeRule(const QUuid& id, qsizetype position)
{
    LapsaSettings changed = settings();
    QList<LapsaFileTypeRule>& rules = changed.fileTypeRules;
    const auto found = std::ranges::find(rules, id, &LapsaFileTypeRule::id);
    if (found == rules.end()) {
        return;
    }
    const qsizetype from = found - rules.begin();
    const qsizetype target = std::clamp<qsizetype>(position, 0, rules.size() - 1);
    if (from != target) {
        rules.move(from, target);
        setSettings(changed);
    }
}

void LapsaStore::addAutoCleanFolder(const QUrl& url)
{
    const std::optional<QString> path = fileSystem::standardizedPath(url);
    LapsaSettings changed = settings();
    if (!path || std::ranges::count(changed.autoCleanFolders, *path, &LapsaAutoCleanFolderRule::folderPath) > 0) {
        return;
    }
    changed.autoCleanFolders.push_back({.folderPath = *path, .createdAt = m_environment.clock.now()});
    setSettings(changed);
    m_environment.lanes.look(*path, [folder = *path, store = QPointer(this)](LaneJob&) -> Lanes::Report {
        return [folder, store, steps = fileSystem::stepsTowards(folder)] {
            if (store) {
                store->m_knownPaths.noteFolder(folder, steps);
                store->saveKnownPaths();
            }
        };
    });
}

void LapsaStore::removeAutoCleanFolder(const QUuid& id)
{
    LapsaSettings changed = settings();
    changed.autoCleanFolders.removeIf([&id](const LapsaAutoCleanFolderRule& rule) { return rule.id == id; });
    setSettings(changed);
}

} // namespace lapsa
