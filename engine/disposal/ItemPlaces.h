// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryIndex.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

namespace lapsa {

/// What one look at an item's place on disk found.
struct SeenPlace
{
    /// Standardised.
    QString path;
    /// Nothing if it cannot be seen.
    std::optional<fileSystem::EntryInfo> entry;
    /// The folders that the path names and those really above it, unless an earlier look of the same PlaceLook found
    /// them.
    QStringList folders;
    std::vector<FileIdentity> foldersAbove;
};

/// Looks at the places of items on disk, one after the other.
class PlaceLook final
{
public:
    PlaceLook();
    ~PlaceLook();

    /// Nothing for an item that is nowhere: its file is gone, or its path is not one.
    [[nodiscard]] std::optional<SeenPlace> at(const QString& path);

private:
    class Neighbours;

    std::unique_ptr<Neighbours> m_neighbours;
    QSet<QString> m_visited;
    std::unordered_set<FileIdentity, FileIdentityHash> m_above;
};

/// Where some items of the list are on disk. Tells whether one of them is a given entry or lies inside it, by path and
/// by identity on disk, so symbolic links and other spellings make no difference. A place that was not seen counts by
/// its path only. Answers look at the disk near the entry asked about.
class ItemPlaces final
{
public:
    ItemPlaces(const QStringList& paths, const QList<SeenPlace>& seen);

    [[nodiscard]] bool includes(const QString& path, const fileSystem::EntryInfo& entry) const;
    [[nodiscard]] bool lieIn(const QString& path, const fileSystem::EntryInfo& entry) const;
    /// Asks both questions about the entry that is at `path` now.
    [[nodiscard]] bool areAtOrIn(const QString& path) const;

private:
    void readPaths(const QStringList& paths);
    [[nodiscard]] bool existBelow(const QString& path) const;

    /// Standardised.
    QStringList m_files;
    /// The paths of the items, and those of all folders above them.
    QSet<QString> m_paths;
    QSet<QString> m_pathsAbove;
    EntryIndex m_entries;
    std::unordered_set<FileIdentity, FileIdentityHash> m_above;
    /// By folded spelling, for file systems whose identities do not show that two spellings are one file.
    QMultiHash<QString, QString> m_spellings;
    QMultiHash<QString, QString> m_spellingsAbove;
};

} // namespace lapsa
