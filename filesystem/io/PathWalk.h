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

/// A folder that was entered, or a link that was followed.
struct WalkedStep
{
    fileSystem::PathStep step;
    /// Whether somebody else than the user and the administrator may put another entry into its place.
    bool exchangeable = false;
};

struct WalkedFolder
{
    /// Opened with O_PATH.
    FileDescriptor folder;
    struct statx status = {};
    /// No link was followed, and nothing on the way is exchangeable.
    bool plain = false;
    /// Only where they were asked for: its path without links, and each step of the way.
    QByteArray path;
    std::vector<WalkedStep> steps;
};

enum class WalkDetail
{
    Folder,
    /// Takes longer.
    Steps,
};

/// Opens the folder of an absolute path. On the way a link is followed only if it belongs to this user or to the
/// administrator: others could lead us into what is not theirs to touch. EACCES for one of somebody else's.
[[nodiscard]] Result<WalkedFolder> walkTo(const QByteArray& path, WalkDetail detail);

/// The folder of this name in one that a walk found plain, if it is plain too. An error where it is not: walkTo() then
/// tells.
[[nodiscard]] Result<WalkedFolder> plainFolderIn(const WalkedFolder& above, const QByteArray& name);

/// Whether a link of this owner is followed.
[[nodiscard]] bool mayFollowLinkOf(uid_t owner);

/// Whether others may write an open folder, by its status (STATX_BASIC_STATS).
[[nodiscard]] bool othersMayWrite(int folder, const struct statx& status);

/// Whether others may put something else into the place of an entry of this open folder.
[[nodiscard]] bool othersMayExchange(int folder, const struct statx& folderStatus, const struct statx& entry);

/// What tells later whether this still is the same entry. `file` is open, with O_PATH or otherwise.
[[nodiscard]] fileSystem::PathStep pathStep(const QByteArray& path, int file, const struct statx& status);

/// Whether a step that was remembered is the one that is seen now.
[[nodiscard]] bool isSameStep(const fileSystem::PathStep& before, const fileSystem::PathStep& now);

} // namespace lapsa
