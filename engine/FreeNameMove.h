// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "FreeNames.h"
#include "Result.h"

#include <QString>

namespace lapsa {

/// Moves the entry to `wanted`, or where that is taken to its first free variant. Returns where it is now. Errors as
/// for fileSystem::Batch::move().
[[nodiscard]] Result<QString> moveToFreeName(fileSystem::Batch& batch, const fileSystem::BatchEntry& entry,
                                             const QString& wanted, FreeNames& freeNames);

} // namespace lapsa
