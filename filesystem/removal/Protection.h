// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa::fileSystem {

class KnownPaths;

/// What must never be moved or removed, whatever a record says: "/", the home folder, mount points and everything above
/// them; also `folder`, the folders directly in it (behind a link, the folder that it leads to) and everything above
/// them. Folders are recognised by identity, not by path.
struct Protection
{
    QString folder;
    /// Where the paths led when the user named them, if known. A path that other users have made lead elsewhere gives
    /// EACCES. Must outlive every user of this record.
    const KnownPaths* knownPaths = nullptr;
};

} // namespace lapsa::fileSystem
