// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Protection.h"

#include <QString>

#include <optional>

namespace lapsa::fileSystem {

/// Why an entry must not be moved or removed.
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

/// Why a Batch would refuse to move or remove the entry at `path`; nothing if it would not or there is no entry.
/// Concerns a link itself, not its target. An entry that fileSystem::status() reports as neither a folder nor a mount
/// point is never refused and needs no check.
[[nodiscard]] std::optional<Refusal> refusalOf(const QString& path, const Protection& protection);

} // namespace lapsa::fileSystem
