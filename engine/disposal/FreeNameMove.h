// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"
#include "FreeNames.h"
#include "Result.h"

#include <QString>

namespace lapsa {

struct NewPlace
{
    QString path;
    /// Whether the entry, or a part of it, is also still where it was, because it could not be removed there.
    bool isCopy = false;
};

/// Moves the entry to `wanted`, or to its first free variant if that name is taken. Returns the new path. Errors as for
/// fileSystem::Batch::move(), but for EINPROGRESS.
[[nodiscard]] Result<NewPlace> moveToFreeName(fileSystem::Batch& batch, const fileSystem::BatchEntry& entry,
                                              const QString& wanted, FreeNames& freeNames);

} // namespace lapsa
