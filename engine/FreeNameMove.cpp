// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreeNameMove.h"

#include <cerrno>

namespace lapsa {

Result<QString> moveToFreeName(fileSystem::Batch& batch, const fileSystem::BatchEntry& entry, const QString& wanted,
                               FreeNames& freeNames)
{
    // The first look at a folder is the move itself, and a name can be taken between a look and the move. That one is
    // taken over and over again is no accident any more.
    constexpr int mostTries = 1000;
    Result<void> moved;
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        const QString destination = freeNames.uniquePath(wanted);
        moved = batch.move(entry, destination);
        if (moved) {
            freeNames.markTaken(destination);
            return destination;
        }
        if (moved.error().code != EEXIST) {
            break;
        }
        freeNames.reject(wanted, destination);
    }
    return moved.error();
}

} // namespace lapsa
