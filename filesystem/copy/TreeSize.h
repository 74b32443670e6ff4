// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"

#include <cstdint>

namespace lapsa {

class CopyProgress;

/// The size of all files in the folder at `place`, in bytes; a file with several names counts once. Follows no links
/// and enters no mounts. What cannot be looked at counts nothing: the copy will meet it and say why. EBUSY if it is no
/// longer the folder of this identity, ECANCELED if the observer does not want to wait.
[[nodiscard]] Result<std::int64_t> sizeOfTree(const AtPath& place, const FileIdentity& identity,
                                              CopyProgress& progress);

} // namespace lapsa
