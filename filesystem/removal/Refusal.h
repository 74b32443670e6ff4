// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Protection.h"

#include <QString>

#include <optional>

namespace lapsa::fileSystem {

/// Why something may be neither moved nor removed.
enum class Refusal
{
    Root,
    Home,
    /// The folder that `Protection` names.
    ProtectedFolder,
    MountPoint,
    HoldsHome,
    HoldsProtectedFolder,
    HoldsMountPoint,
};

/// Why a Batch would refuse to move or remove what stands at `path`; nothing where they would not, or where there is
/// nothing. A link is asked about itself, not about its target. What fileSystem::status() says is neither a folder nor
/// a mount point is never refused and need not be asked about.
[[nodiscard]] std::optional<Refusal> refusalOf(const QString& path, const Protection& protection);

} // namespace lapsa::fileSystem
