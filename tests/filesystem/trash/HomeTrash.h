// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileBatch.h"

#include <QString>

namespace lapsa::test {

/// The two folders of the home's trash, relative to the home.
inline const QString trashedFiles = QStringLiteral(".local/share/Trash/files");
inline const QString trashRecords = QStringLiteral(".local/share/Trash/info");

/// Puts an entry into the trash with no protection; 0 or the error's code.
[[nodiscard]] inline int trash(const QString& path)
{
    const Result<void> result = fileSystem::Batch({}).moveToTrash(path);
    return result ? 0 : result.error().code;
}

} // namespace lapsa::test
