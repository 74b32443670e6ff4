// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Clock.h"
#include "FileSystem.h"
#include "FoundFile.h"
#include "WatchedFolder.h"

#include <QSet>
#include <QStringView>

#include <algorithm>
#include <chrono>

namespace lapsa {

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
    const std::optional<QString> path = watchedFolder::pathOf(rule);
    if (!path) {
        return;
    }
    const QString folder = *path == u"/" ? QString() : *path;
    const QSet<QStringView> known = watchedFolder::namesOnCountdown(m_items, *path);
    QList<FoundFile> taken;
    const auto listed = fileSystem::forEachVisibleEntry(*path, m_knownPaths, [&](const fileSystem::FolderEntry& entry) {
        // Entries that may never be taken are skipped silently: nobody asked for them.
        if (!known.contains(entry.name()) && watchedFolder::mayBeTaken(entry.status()) && isNewFor(rule, entry)) {
            taken.push_back({.path = folder + u'/' + entry.name(), .isDirectory = false});
        }
    });
    // A folder that cannot be listed completely now is scanned again in the next pass: silent on purpose.
    if (!listed) {
        return;
    }
    if (!m_knownPaths.stepsInto(*path)) {
        m_knownPaths.rememberFolder(*path); // watched before this was remembered
        if (m_knownPaths.stepsInto(*path)) {
            saveKnownPaths();
        }
    }
    addFound(taken, watchedFolder::addOptions(rule));
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
