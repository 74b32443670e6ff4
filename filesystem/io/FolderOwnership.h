// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa::fileSystem {

enum class Ownership
{
    /// The folder is this user's and nobody else may write to it; or it does not exist.
    Own,
    OthersMayWrite,
    SomebodyElses,
};

/// Who owns a folder, following links.
[[nodiscard]] Ownership ownershipOf(const QString& folder);

/// Sets mode 0700 on a folder of this user. Does nothing if it is not a folder or somebody else's; ignores file systems
/// without modes.
void makePrivate(const QString& folder);

} // namespace lapsa::fileSystem
