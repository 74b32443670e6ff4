// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryIndex.h"
#include "LapsaItem.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <unordered_set>

namespace lapsa {

/// Where some items of the list are on disk. Tells whether one of them is a given entry or lies inside it, by path and
/// by identity on disk, so symbolic links and other spellings make no difference. Items whose files are gone are
/// nowhere. Nothing is read before the first question.
class ItemPlaces final
{
public:
    explicit ItemPlaces(const QList<LapsaItem>& items);
    [[nodiscard]] static ItemPlaces ofLocked(const QList<LapsaItem>& items);

    [[nodiscard]] bool includes(const QString& path, const fileSystem::EntryInfo& entry);
    [[nodiscard]] bool lieIn(const QString& path, const fileSystem::EntryInfo& entry);
    /// Asks both questions about the entry that is at `path` now.
    [[nodiscard]] bool areAtOrIn(const QString& path);

private:
    void readPaths();
    void lookAtDisk();
    void addFoldersAbove(QString folder);
    [[nodiscard]] bool existBelow(const QString& path) const;

    /// Standardised once they have been read.
    QStringList m_files;
    bool m_pathsRead = false;
    /// The paths of the items, and those of all folders above them.
    QSet<QString> m_paths;
    QSet<QString> m_pathsAbove;
    bool m_diskSeen = false;
    EntryIndex m_entries;
    QSet<QString> m_visited;
    std::unordered_set<FileIdentity, FileIdentityHash> m_above;
    /// By folded spelling, for file systems whose identities do not show that two spellings are one file.
    QMultiHash<QString, QString> m_spellings;
    QMultiHash<QString, QString> m_spellingsAbove;
};

} // namespace lapsa
