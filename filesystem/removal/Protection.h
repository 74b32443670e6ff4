// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa::fileSystem {

class KnownPaths;

/// What may be neither moved nor removed, whatever a record says: "/", the home folder, mount points and everything
/// above one of these always; the folder named here and the folders directly in it, wherever they really are where a
/// link stands for one, and everything above them, too. Folders are known by what they are, not by their paths.
struct Protection
{
    QString folder;
    /// Where the paths led when the user named them, if that is known. What other users have led elsewhere meanwhile is
    /// EACCES. Outlives whoever is given it.
    const KnownPaths* knownPaths = nullptr;
};

} // namespace lapsa::fileSystem
