// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>

namespace lapsa::fileSystem {

/// The number of files in a folder and all its subfolders: everything but folders, including hidden files and links.
struct FileCount
{
    std::int64_t files = 0;
    /// False if the count stopped at a limit or a subfolder could not be listed: there may be more.
    bool whole = true;

    friend bool operator==(const FileCount&, const FileCount&) = default;
};

/// The limits of a count, so that nobody waits long for a huge or slow folder.
struct CountLimits
{
    /// The most files, and the most subfolders, to count; one more ends the count.
    std::int64_t most = 0;
    QDeadlineTimer deadline;
    /// If set, called for each entry; the answer "no" ends the count.
    std::function<bool()> goesOn = {};
};

/// Nothing if `folder` is not a folder itself (a link to one is not) or is not accessible. Follows no links and enters
/// no mounts.
[[nodiscard]] std::optional<FileCount> countFiles(const QString& folder, const CountLimits& limits);

} // namespace lapsa::fileSystem
