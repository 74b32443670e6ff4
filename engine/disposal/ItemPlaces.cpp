// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ItemPlaces.h"

#include "FileName.h"
#include "FileSystem.h"
#include "Spelling.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <utility>

namespace lapsa {

namespace {

/// Looks up entries; consecutive entries of the same folder share one open folder.
class Neighbours
{
public:
    [[nodiscard]] Result<fileSystem::EntryInfo> info(const QString& path)
    {
        const QString folder = parentPath(path);
        if (!m_folder || folder != m_path) {
            m_folder.emplace(folder);
            m_path = folder;
        }
        return m_folder->info(lastPathComponent(path));
    }

private:
    QString m_path;
    std::optional<fileSystem::HeldFolder> m_folder;
};

bool isSpelledIn(const QMultiHash<QString, QString>& spellings, const QString& path)
{
    const auto [begin, end] = spellings.equal_range(foldedSpelling(path));
    return std::any_of(begin, end, [&](const QString& other) { return spellOnePath(path, other); });
}

bool isGone(const Result<fileSystem::EntryInfo>& found)
{
    return !found && (found.error().code == ENOENT || found.error().code == ENOTDIR);
}

} // namespace

ItemPlaces::ItemPlaces(const QList<LapsaItem>& items)
{
    m_files.reserve(items.size());
    for (const LapsaItem& item : items) {
        m_files.push_back(item.path);
    }
}

ItemPlaces ItemPlaces::ofLocked(const QList<LapsaItem>& items)
{
    QList<LapsaItem> locked;
    std::ranges::copy_if(items, std::back_inserter(locked), &LapsaItem::locked);
    return ItemPlaces(locked);
}

bool ItemPlaces::areAtOrIn(const QString& path)
{
    if (m_files.isEmpty()) {
        return false;
    }
    const QString standardized = fileSystem::standardizedPath(path).value_or(path);
    const auto found = Neighbours().info(standardized);
    return found && (includes(standardized, found.value()) || lieIn(standardized, found.value()));
}

bool ItemPlaces::includes(const QString& path, const fileSystem::EntryInfo& entry)
{
    if (m_files.isEmpty()) {
        return false;
    }
    readPaths();
    const QString standardized = fileSystem::standardizedPath(path).value_or(path);
    if (m_paths.contains(standardized)) {
        return true;
    }
    lookAtDisk();
    return m_entries.contains(entry, lastPathComponent(standardized)) || isSpelledIn(m_spellings, standardized);
}

bool ItemPlaces::lieIn(const QString& path, const fileSystem::EntryInfo& entry)
{
    if (m_files.isEmpty()) {
        return false;
    }
    readPaths();
    const QString standardized = fileSystem::standardizedPath(path).value_or(path);
    if (m_pathsAbove.contains(standardized) && existBelow(standardized)) {
        return true;
    }
    if (!entry.isDirectory) {
        return false;
    }
    lookAtDisk();
    return m_above.contains(entry.identity) || isSpelledIn(m_spellingsAbove, standardized);
}

void ItemPlaces::readPaths()
{
    if (std::exchange(m_pathsRead, true)) {
        return;
    }
    for (QString& path : m_files) {
        path = fileSystem::standardizedPath(path).value_or(QString());
    }
    m_files.removeIf([](const QString& path) { return path.isEmpty() || path == u"/"; });
    m_paths = QSet<QString>(m_files.cbegin(), m_files.cend());
    for (const QString& path : std::as_const(m_files)) {
        QString folder = parentPath(path);
        while (!m_pathsAbove.contains(folder)) {
            m_pathsAbove.insert(folder);
            folder = parentPath(folder);
        }
    }
}

void ItemPlaces::lookAtDisk()
{
    if (std::exchange(m_diskSeen, true)) {
        return;
    }
    Neighbours neighbours;
    for (const QString& path : std::as_const(m_files)) {
        const Result<fileSystem::EntryInfo> found = neighbours.info(path);
        if (isGone(found)) {
            continue;
        }
        if (found) {
            m_entries.add(found.value(), lastPathComponent(path));
        }
        m_spellings.insert(foldedSpelling(path), path);
        addFoldersAbove(parentPath(path));
    }
}

/// Adds each folder that the path names, and the folders above it on disk: a symbolic link can lead out of the named
/// folder, and both places hold the item.
void ItemPlaces::addFoldersAbove(QString folder)
{
    while (!m_visited.contains(folder)) {
        m_visited.insert(folder);
        m_spellingsAbove.insert(foldedSpelling(folder), folder);
        // The folders above a known folder are known as well.
        fileSystem::forEachFolderUpwards(
            folder, [this](const FileIdentity& identity) { return m_above.insert(identity).second; });
        folder = parentPath(folder);
    }
}

bool ItemPlaces::existBelow(const QString& path) const
{
    const QString beginning = path == u"/" ? path : path + u'/';
    Neighbours neighbours;
    return std::ranges::any_of(
        m_files, [&](const QString& file) { return file.startsWith(beginning) && !isGone(neighbours.info(file)); });
}

} // namespace lapsa
