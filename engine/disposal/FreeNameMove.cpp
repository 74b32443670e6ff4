// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreeNameMove.h"

#include <cerrno>

namespace lapsa {

Result<NewPlace> moveToFreeName(fileSystem::Batch& batch, const fileSystem::BatchEntry& entry, const QString& wanted,
                                FreeNames& freeNames)
{
    // The first move is tried without listing the folder, and a name can be taken between the listing and the move. If
    // every try finds its name taken, that is no coincidence.
    constexpr int mostTries = 1000;
    Result<void> moved;
    for (int attempt = 0; attempt < mostTries; ++attempt) {
        const QString destination = freeNames.uniquePath(wanted);
        if (!freeNames.claim(destination)) {
            moved = FileError::fromErrno(EEXIST);
            freeNames.reject(wanted, destination);
            continue;
        }
        moved = batch.move(entry, destination);
        const bool isCopy = !moved && moved.error().code == EINPROGRESS;
        if (moved || isCopy) {
            freeNames.markTaken(destination);
            return NewPlace{.path = destination, .isCopy = isCopy};
        }
        freeNames.release(destination);
        if (moved.error().code != EEXIST) {
            break;
        }
        freeNames.reject(wanted, destination);
    }
    return moved.error();
}

} // namespace lapsa
