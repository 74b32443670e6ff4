// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "DuplicateRemoval.h"
#include "FileDescriptor.h"

namespace lapsa {

[[nodiscard]] Result<struct statx> statusOf(const AtPath& place);

/// Opens a file or folder for reading. EBUSY if it is another than the one that had this status.
[[nodiscard]] Result<FileDescriptor> openFound(const AtPath& place, const struct statx& status);

/// For anything but folders. Gone if they are the same, so that one of them can go; Unknown also for two names of one
/// file. `observer` is borrowed; null for none.
[[nodiscard]] fileSystem::Duplicate compare(const AtPath& copy, const AtPath& original,
                                            fileSystem::WorkObserver* observer);

} // namespace lapsa
