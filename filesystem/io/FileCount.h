// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <cstdint>
#include <optional>

namespace lapsa::fileSystem {

/// How many files a folder holds, in all its subfolders: everything that is no folder, hidden files and links too.
struct FileCount
{
    std::int64_t files = 0;
    /// False where the count stopped at a limit, or a subfolder could not be listed: there may be more.
    bool whole = true;

    friend bool operator==(const FileCount&, const FileCount&) = default;
};

/// Where a count stops, so that a huge or slow folder holds up nobody who waits for it.
struct CountLimits
{
    /// As many files, or as many subfolders, as are looked at; one more ends the count.
    std::int64_t most = 0;
    QDeadlineTimer deadline;
};

/// Nothing for what is no folder itself, as a link to one, and for what cannot be looked at. Follows no link and enters
/// no mount.
[[nodiscard]] std::optional<FileCount> countFiles(const QString& folder, const CountLimits& limits);

} // namespace lapsa::fileSystem
