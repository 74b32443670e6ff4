// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "FreeNames.h"
#include "Result.h"

#include <QString>

namespace lapsa {

/// Moves the entry to `wanted`, or to its first free variant if that name is taken. Returns the new path. Errors as for
/// fileSystem::Batch::move().
[[nodiscard]] Result<QString> moveToFreeName(fileSystem::Batch& batch, const fileSystem::BatchEntry& entry,
                                             const QString& wanted, FreeNames& freeNames);

} // namespace lapsa
