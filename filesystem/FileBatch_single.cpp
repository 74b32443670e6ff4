// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "Trash.h"

// One entry by itself is a row of one.

namespace lapsa::fileSystem {

Result<void> move(const QString& from, const QString& to, const Protection& protection)
{
    Batch batch(protection);
    batch.select(from);
    return batch.move(to);
}

Result<void> remove(const QString& path, const Protection& protection)
{
    Batch batch(protection);
    batch.select(path);
    return batch.remove();
}

} // namespace lapsa::fileSystem

namespace lapsa {

Result<void> moveToTrash(const QString& path, const fileSystem::Protection& protection)
{
    fileSystem::Batch batch(protection);
    batch.select(path);
    return batch.moveToTrash();
}

} // namespace lapsa
