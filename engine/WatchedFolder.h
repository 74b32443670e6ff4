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

/// What a scan, and a preview of a scan, know about a watched folder.
namespace lapsa::watchedFolder {

/// The folder of a rule, standardised. Nothing if none is set, nor for Lapsa's own data folder and folders inside it:
/// Lapsa never adds its own files.
[[nodiscard]] std::optional<QString> pathOf(const LapsaAutoCleanFolderRule& rule);

/// The names of the items that are directly in a folder. Views into `items`.
[[nodiscard]] QSet<QStringView> namesOnCountdown(const QList<LapsaItem>& items, const QString& folder);

/// Whether a scan may take an entry at all, new or not.
[[nodiscard]] bool mayBeTaken(const fileSystem::Status& status);

/// How a rule's files are added: by the file type rules or with the folder's own lifespan, never both, on purpose.
[[nodiscard]] LapsaStore::AddOptions addOptions(const LapsaAutoCleanFolderRule& rule);

/// The files at the top level of a watched folder, old and new, that a scan may take; at most `limit`. Lists the
/// folder; nothing if that fails.
[[nodiscard]] std::optional<QStringList> fileNames(const LapsaAutoCleanFolderRule& rule, qsizetype limit);

/// What would happen if the existing files were included.
struct Outlook
{
    /// How many files there are.
    qsizetype present = 0;
    /// How many of them would be put on countdown: those that are not yet.
    qsizetype taken = 0;
    /// The lifespans these would get, in minutes; 0 if there are none.
    std::int64_t shortestMinutes = 0;
    std::int64_t longestMinutes = 0;

    friend bool operator==(const Outlook&, const Outlook&) = default;
};

/// For the files that fileNames() found. Does not access the disk.
[[nodiscard]] Outlook outlook(const LapsaStore& store, const LapsaAutoCleanFolderRule& rule, const QStringList& files);

} // namespace lapsa::watchedFolder
