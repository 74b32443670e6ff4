// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <cstdint>

namespace lapsa {

class CopyProgress;

/// The files of a folder and of all folders in it. A file with several names counts once.
struct TreeSize
{
    std::int64_t bytes = 0;
    /// The least room, in bytes, that a copy takes, as leastRoomOf() has it.
    std::int64_t leastRoom = 0;
};

/// Measures the folder at `place`. Follows no links and enters no mounts. What cannot be looked at counts nothing: the
/// copy will meet it and say why. EBUSY if it is no longer the folder of this identity, ECANCELED if the observer does
/// not want to wait.
[[nodiscard]] Result<TreeSize> sizeOfTree(const AtPath& place, const FileIdentity& identity, CopyProgress& progress);

} // namespace lapsa
