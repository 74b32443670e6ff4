// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"
#include "LapsaStore.h"

#include <QSet>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <cstdint>
#include <optional>

/// What a scan and whoever foretells one know about a watched folder.
namespace lapsa::watchedFolder {

/// Where a rule's folder is, standardised. Nothing where none is set, and for Lapsa's own folder: its files are
/// nobody's leftovers.
[[nodiscard]] std::optional<QString> pathOf(const LapsaAutoCleanFolderRule& rule);

/// The names of the items that lie directly in a folder. Views into `items`.
[[nodiscard]] QSet<QStringView> namesOnCountdown(const QList<LapsaItem>& items, const QString& folder);

/// Whether a scan may take an entry at all, be it new or not.
[[nodiscard]] bool mayBeTaken(const fileSystem::Status& status);

/// How a rule's files are added: by the file type rules or with the folder's own lifespan, never both, on purpose.
[[nodiscard]] LapsaStore::AddOptions addOptions(const LapsaAutoCleanFolderRule& rule);

/// The files at the top level of a watched folder, old and new, that a scan may take. Lists the folder: nothing where
/// that fails. No more than `limit` files are looked at.
[[nodiscard]] std::optional<QStringList> fileNames(const LapsaAutoCleanFolderRule& rule, qsizetype limit);

/// What including the files that are there would do.
struct Outlook
{
    /// How many there are.
    qsizetype present = 0;
    /// How many of them would be put on countdown: those that are not on it.
    qsizetype taken = 0;
    /// The lifespans that these would get, in minutes; 0 where there are none.
    std::int64_t shortestMinutes = 0;
    std::int64_t longestMinutes = 0;

    friend bool operator==(const Outlook&, const Outlook&) = default;
};

/// For the files that fileNames() found. Nothing is asked of the disk.
[[nodiscard]] Outlook outlook(const LapsaStore& store, const LapsaAutoCleanFolderRule& rule, const QStringList& files);

} // namespace lapsa::watchedFolder
