// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AppPaths.h"
#include "Clock.h"
#include "FileSystem.h"
#include "FoundFile.h"

#include <QSet>
#include <QStringView>

#include <algorithm>
#include <chrono>
#include <vector>

namespace lapsa {

namespace {

/// The names of the items that lie directly in a folder.
QSet<QStringView> namesOnCountdown(const QList<LapsaItem>& items, const QString& folder)
{
    std::vector<QStringView> names;
    for (const LapsaItem& item : items) {
        const QStringView path(item.path);
        if (path.size() > folder.size() && path.startsWith(folder) && path[folder.size()] == u'/') {
            names.push_back(path.sliced(folder.size() + 1));
        }
    }
    // All at once: a set that grows puts each of them into its place several times.
    return {names.begin(), names.end()};
}

bool isNewFor(const LapsaAutoCleanFolderRule& rule, const fileSystem::FolderEntry& entry)
{
    // In whole seconds: a rule that was read from its file has lost the fraction.
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
        if (rule.enabled && !rule.folderPath.isEmpty()) {
            scanFolder(rule);
        }
    }
}

void LapsaStore::scanFolder(const LapsaAutoCleanFolderRule& rule)
{
    const std::optional<QString> standardized = fileSystem::standardizedPath(rule.folderPath);
    // Lapsa's own files are nobody's leftovers.
    if (!standardized || fileSystem::isInside(*standardized, AppPaths::applicationSupportDirectory().toLocalFile())) {
        return;
    }
    const QString folder = *standardized == u"/" ? QString() : *standardized;
    const QSet<QStringView> known = namesOnCountdown(m_items, folder);
    QList<FoundFile> taken;
    const auto listed =
        fileSystem::forEachVisibleEntry(*standardized, m_knownPaths, [&](const fileSystem::FolderEntry& entry) {
            if (known.contains(entry.name())) {
                return;
            }
            const fileSystem::Status status = entry.status();
            // What may never be taken is passed over in silence: nobody asked for it.
            if (status.exists && !status.isDirectory && !status.isMountPoint && isNewFor(rule, entry)) {
                taken.push_back({.path = folder + u'/' + entry.name(), .isDirectory = false});
            }
        });
    // A folder that cannot be listed now, or not to its end, is looked at again by the next pass: silent on purpose.
    if (!listed) {
        return;
    }
    // Either the file type rules or the folder's own lifespan, never both, on purpose.
    addFound(taken, rule.applyFileTypeRules
                        ? AddOptions{}
                        : AddOptions{.fixedLifespan = rule.lifespanMinutes, .applyFileTypeRules = false});
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

void LapsaStore::addAutoCleanFolder(const QUrl& url)
{
    const std::optional<QString> path = fileSystem::standardizedPath(url);
    LapsaSettings changed = settings();
    if (!path || std::ranges::count(changed.autoCleanFolders, *path, &LapsaAutoCleanFolderRule::folderPath) > 0) {
        return;
    }
    changed.autoCleanFolders.push_back({.folderPath = *path, .createdAt = m_environment.clock.now()});
    m_knownPaths.rememberFolder(*path);
    setSettings(changed);
    saveKnownPaths();
}

void LapsaStore::removeAutoCleanFolder(const QUuid& id)
{
    LapsaSettings changed = settings();
    changed.autoCleanFolders.removeIf([&id](const LapsaAutoCleanFolderRule& rule) { return rule.id == id; });
    setSettings(changed);
}

} // namespace lapsa
