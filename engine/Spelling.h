// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// What all spellings of a name or path have in common that some file systems take for the same: upper and lower case,
/// composed and decomposed letters.
[[nodiscard]] QString foldedSpelling(const QString& text);

/// Whether two names that are spellings of each other lead to the same entry of a folder: where both are listed, they
/// are two. Not every file system tells by device and inode. A folder that cannot be listed counts as having one.
[[nodiscard]] bool spellOneEntry(const QString& folder, const QString& name, const QString& other);

/// The same for two standardised paths that are spellings of each other.
[[nodiscard]] bool spellOnePath(const QString& path, const QString& other);

} // namespace lapsa
