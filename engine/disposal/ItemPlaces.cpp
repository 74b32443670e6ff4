// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ItemPlaces.h"

#include "FileName.h"
#include "FileSystem.h"
#include "Spelling.h"

#include <algorithm>
#include <cerrno>

namespace lapsa {

/// Looks up entries; consecutive entries of the same folder share one open folder.
class PlaceLook::Neighbours
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

namespace {

Result<fileSystem::EntryInfo> infoAt(const QString& path)
{
    return fileSystem::HeldFolder(parentPath(path)).info(lastPathComponent(path));
}

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

PlaceLook::PlaceLook()
    : m_neighbours(std::make_unique<Neighbours>())
{}

PlaceLook::~PlaceLook() = default;

std::optional<SeenPlace> PlaceLook::at(const QString& path)
{
    const std::optional<QString> standardized = fileSystem::standardizedPath(path);
    if (!standardized || *standardized == u"/") {
        return std::nullopt;
    }
    const Result<fileSystem::EntryInfo> found = m_neighbours->info(*standardized);
    if (isGone(found)) {
        return std::nullopt;
    }
    SeenPlace seen{.path = *standardized,
                   .entry = found ? std::optional(found.value()) : std::nullopt,
                   .folders = {},
                   .foldersAbove = {}};
    // Each folder that the path names, and the folders above it on disk: a symbolic link can lead out of the named
    // folder, and both places hold the item.
    for (QString folder = parentPath(*standardized); !m_visited.contains(folder); folder = parentPath(folder)) {
        m_visited.insert(folder);
        seen.folders.push_back(folder);
        // The folders above a known folder are known as well.
        fileSystem::forEachFolderUpwards(folder, [&](const FileIdentity& identity) {
            const bool isNew = m_above.insert(identity).second;
            if (isNew) {
                seen.foldersAbove.push_back(identity);
            }
            return isNew;
        });
    }
    return seen;
}

ItemPlaces::ItemPlaces(const QStringList& paths, const QList<SeenPlace>& seen)
{
    readPaths(paths);
    for (const SeenPlace& place : seen) {
        if (place.entry) {
            m_entries.add(*place.entry, lastPathComponent(place.path));
        }
        m_spellings.insert(foldedSpelling(place.path), place.path);
        for (const QString& folder : place.folders) {
            m_spellingsAbove.insert(foldedSpelling(folder), folder);
        }
        m_above.insert(place.foldersAbove.cbegin(), place.foldersAbove.cend());
    }
}

bool ItemPlaces::areAtOrIn(const QString& path) const
{
    if (m_files.isEmpty()) {
        return false;
    }
    const QString standardized = fileSystem::standardizedPath(path).value_or(path);
    const auto found = infoAt(standardized);
    return found && (includes(standardized, found.value()) || lieIn(standardized, found.value()));
}

bool ItemPlaces::includes(const QString& path, const fileSystem::EntryInfo& entry) const
{
    if (m_files.isEmpty()) {
        return false;
    }
    const QString standardized = fileSystem::standardizedPath(path).value_or(path);
    return m_paths.contains(standardized) || m_entries.contains(entry, lastPathComponent(standardized)) ||
           isSpelledIn(m_spellings, standardized);
}

bool ItemPlaces::lieIn(const QString& path, const fileSystem::EntryInfo& entry) const
{
    if (m_files.isEmpty()) {
        return false;
    }
    const QString standardized = fileSystem::standardizedPath(path).value_or(path);
    if (m_pathsAbove.contains(standardized) && existBelow(standardized)) {
        return true;
    }
    return entry.isDirectory && (m_above.contains(entry.identity) || isSpelledIn(m_spellingsAbove, standardized));
}

void ItemPlaces::readPaths(const QStringList& paths)
{
    m_files.reserve(paths.size());
    for (const QString& path : paths) {
        const QString standardized = fileSystem::standardizedPath(path).value_or(QString());
        if (!standardized.isEmpty() && standardized != u"/") {
            m_files.push_back(standardized);
        }
    }
    m_paths = QSet<QString>(m_files.cbegin(), m_files.cend());
    for (const QString& path : std::as_const(m_files)) {
        QString folder = parentPath(path);
        while (!m_pathsAbove.contains(folder)) {
            m_pathsAbove.insert(folder);
            folder = parentPath(folder);
        }
    }
}

bool ItemPlaces::existBelow(const QString& path) const
{
    const QString beginning = path == u"/" ? path : path + u'/';
    return std::ranges::any_of(
        m_files, [&](const QString& file) { return file.startsWith(beginning) && !isGone(infoAt(file)); });
}

} // namespace lapsa
