// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa::fileSystem {

enum class Ownership
{
    /// This user's, and nobody else may write it; or there is no such folder.
    Own,
    OthersMayWrite,
    SomebodyElses,
};

/// Whose a folder is, links followed.
[[nodiscard]] Ownership ownershipOf(const QString& folder);

/// Mode 0700 for a folder of this user's that others may look into. Nothing happens to what is no folder or somebody
/// else's; a file system without modes is no failure.
void makePrivate(const QString& folder);

} // namespace lapsa::fileSystem
