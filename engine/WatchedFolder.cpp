// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "WatchedFolder.h"

#include "AddedLifespans.h"
#include "AppPaths.h"

#include <algorithm>
#include <vector>

namespace lapsa::watchedFolder {

std::optional<QString> pathOf(const LapsaAutoCleanFolderRule& rule)
{
    if (rule.folderPath.isEmpty()) {
        return std::nullopt;
    }
    const std::optional<QString> path = fileSystem::standardizedPath(rule.folderPath);
    if (!path || fileSystem::isInside(*path, AppPaths::applicationSupportDirectory().toLocalFile())) {
        return std::nullopt;
    }
    return path;
}

QSet<QStringView> namesOnCountdown(const QList<LapsaItem>& items, const QString& folder)
{
    const qsizetype length = folder == u"/" ? 0 : folder.size();
    std::vector<QStringView> names;
    for (const LapsaItem& item : items) {
        const QStringView path(item.path);
        if (path.size() > length && path.startsWith(folder) && path[length] == u'/') {
            names.push_back(path.sliced(length + 1));
        }
    }
    // Built at once: a growing set would rehash its elements several times.
    return {names.begin(), names.end()};
}

bool mayBeTaken(const fileSystem::Status& status)
{
    return status.exists && !status.isDirectory && !status.isMountPoint;
}

LapsaStore::AddOptions addOptions(const LapsaAutoCleanFolderRule& rule)
{
    return rule.applyFileTypeRules
               ? LapsaStore::AddOptions{}
               : LapsaStore::AddOptions{.fixedLifespan = rule.lifespanMinutes, .applyFileTypeRules = false};
}

std::optional<QStringList> fileNames(const LapsaAutoCleanFolderRule& rule, qsizetype limit)
{
    const std::optional<QString> path = pathOf(rule);
    if (!path) {
        return std::nullopt;
    }
    QStringList names;
    const Result<void> listed = fileSystem::forEachVisibleEntry(*path, [&](const fileSystem::FolderEntry& entry) {
        if (names.size() < limit && mayBeTaken(entry.status())) {
            names.push_back(entry.name());
        }
    });
    return listed ? std::optional(names) : std::nullopt;
}

Outlook outlook(const LapsaStore& store, const LapsaAutoCleanFolderRule& rule, const QStringList& files)
{
    const QString folder = fileSystem::standardizedPath(rule.folderPath).value_or(QString());
    const QSet<QStringView> known = namesOnCountdown(store.items(), folder);
    const AddedLifespans lifespans(store.settings(), addOptions(rule));
    Outlook outlook{.present = files.size()};
    for (const QString& name : files) {
        if (known.contains(name)) {
            continue;
        }
        const std::int64_t minutes = lifespans.minutesFor(name, false);
        outlook.shortestMinutes = outlook.taken == 0 ? minutes : std::min(outlook.shortestMinutes, minutes);
        outlook.longestMinutes = std::max(outlook.longestMinutes, minutes);
        ++outlook.taken;
    }
    return outlook;
}

} // namespace lapsa::watchedFolder
