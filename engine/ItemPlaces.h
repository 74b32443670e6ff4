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

/// Where some items of the list stand on the disk. It is asked whether one of them is an entry, or lies inside it,
/// by the paths and by what is found on the disk: a link on the way or another spelling makes no difference. Items
/// whose file is gone stand nowhere. Nothing is looked at before the first question.
class ItemPlaces final
{
public:
    explicit ItemPlaces(const QList<LapsaItem>& items);
    [[nodiscard]] static ItemPlaces ofLocked(const QList<LapsaItem>& items);

    [[nodiscard]] bool includes(const QString& path, const fileSystem::EntryInfo& entry);
    [[nodiscard]] bool lieIn(const QString& path, const fileSystem::EntryInfo& entry);
    /// Both questions about what stands at a path now.
    [[nodiscard]] bool areAtOrIn(const QString& path);

private:
    void readPaths();
    void lookAtDisk();
    void addFoldersAbove(QString folder);
    [[nodiscard]] bool existBelow(const QString& path) const;

    /// Once read, standardised.
    QStringList m_files;
    bool m_pathsRead = false;
    /// Those of the items, and of all folders above them.
    QSet<QString> m_paths;
    QSet<QString> m_pathsAbove;
    bool m_diskSeen = false;
    EntryIndex m_entries;
    QSet<QString> m_visited;
    std::unordered_set<FileIdentity, FileIdentityHash> m_above;
    /// By their folded spelling, as where the disk does not tell that two spellings are one file.
    QMultiHash<QString, QString> m_spellings;
    QMultiHash<QString, QString> m_spellingsAbove;
};

} // namespace lapsa
