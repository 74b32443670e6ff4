// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "Result.h"

#include <QString>

namespace lapsa {

/// Moves an entry from the Trash back to `originalPath`, or to its first free variant if that name is taken; a folder
/// that is gone is made again. Returns the new path. ENOENT if the entry or its record is not the one that was made:
/// then nothing is touched. Other errors as for fileSystem::Batch::move().
[[nodiscard]] Result<QString> takeBack(fileSystem::Batch& batch, const fileSystem::TrashedEntry& trashed,
                                       const QString& originalPath);

} // namespace lapsa
