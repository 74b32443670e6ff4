// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TrashReturn.h"

#include "FileName.h"
#include "FileSystem.h"
#include "FreeNameMove.h"
#include "FreeNames.h"

#include <cerrno>
#include <tuple>

namespace lapsa {

namespace {

bool isStill(const fileSystem::BatchEntry& entry, const FileIdentity& identity)
{
    const std::optional<fileSystem::EntryInfo> info = entry.info();
    return info && info->identity == identity;
}

} // namespace

Result<QString> takeBack(fileSystem::Batch& batch, const fileSystem::TrashedEntry& trashed, const QString& originalPath)
{
    const fileSystem::BatchEntry entry = batch.find(trashed.path);
    const fileSystem::BatchEntry record = batch.find(trashed.recordPath);
    if (!isStill(entry, trashed.identity) || !isStill(record, trashed.recordIdentity)) {
        return FileError::fromErrno(ENOENT);
    }
    if (auto made = fileSystem::createDirectory(parentPath(originalPath), fileSystem::Access::Default); !made) {
        return made.error();
    }
    FreeNames freeNames;
    const Result<NewPlace> moved = moveToFreeName(batch, entry, originalPath, freeNames);
    if (!moved) {
        return moved.error();
    }
    if (!moved.value().isCopy) {
        // The readers of the Trash skip, and clean up, a record without an entry.
        std::ignore = batch.remove(record);
    }
    return moved.value().path;
}

} // namespace lapsa
