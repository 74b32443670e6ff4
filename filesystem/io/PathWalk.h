// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "FileDescriptor.h"
#include "KnownPaths.h"
#include "Result.h"

#include <QByteArray>

#include <sys/stat.h>

#include <vector>

namespace lapsa {

/// A folder that a walk entered or a link that it followed.
struct WalkedStep
{
    fileSystem::PathStep step;
    /// Whether somebody other than the user and the administrator may replace it with another entry.
    bool exchangeable = false;
};

struct WalkedFolder
{
    /// Open with O_PATH.
    FileDescriptor folder;
    struct statx status = {};
    /// No link was followed, and nothing on the way is exchangeable.
    bool plain = false;
    /// Only with WalkDetail::Steps: its path without links, and each step of the way.
    QByteArray path;
    std::vector<WalkedStep> steps;
};

enum class WalkDetail
{
    Folder,
    /// Takes longer.
    Steps,
};

/// Opens the folder at an absolute path. Follows a link only if it belongs to this user or the administrator, because
/// others could lead us to files that they may not touch themselves. EACCES for somebody else's link.
[[nodiscard]] Result<WalkedFolder> walkTo(const QByteArray& path, WalkDetail detail);

/// The subfolder of this name in a folder that a walk found plain, if it is plain too. If it fails, ask walkTo().
[[nodiscard]] Result<WalkedFolder> plainFolderIn(const WalkedFolder& above, const QByteArray& name);

/// Whether a link of this owner is followed.
[[nodiscard]] bool mayFollowLinkOf(uid_t owner);

/// Whether others may write to an open folder, given its status (STATX_BASIC_STATS).
[[nodiscard]] bool othersMayWrite(int folder, const struct statx& status);

/// Whether others may replace an entry of this open folder.
[[nodiscard]] bool othersMayExchange(int folder, const struct statx& folderStatus, const struct statx& entry);

/// The data to recognise this entry later. `file` is open, with O_PATH or otherwise.
[[nodiscard]] fileSystem::PathStep pathStep(const QByteArray& path, int file, const struct statx& status);

/// Whether a remembered step is the same as the one seen now.
[[nodiscard]] bool isSameStep(const fileSystem::PathStep& before, const fileSystem::PathStep& now);

} // namespace lapsa
