// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace lapsa {

/// A common form of all spellings of a name or path that some file systems treat as equal: upper and lower case,
/// composed and decomposed characters.
[[nodiscard]] QString foldedSpelling(const QString& text);

/// Whether two names that are spellings of each other lead to the same entry of a folder: if both are listed, they are
/// two. Device and inode do not tell on every file system. True for a folder that cannot be listed.
[[nodiscard]] bool spellOneEntry(const QString& folder, const QString& name, const QString& other);

/// The same for two standardised paths that are spellings of each other.
[[nodiscard]] bool spellOnePath(const QString& path, const QString& other);

} // namespace lapsa
