// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileIdentity.h"

#include <QString>

namespace lapsa::fileSystem {

class WorkObserver;

/// What became of an entry that stood in two places.
enum class Duplicate
{
    /// Only the original is left.
    Gone,
    /// All or a part of the copy stays: it is not at the original, or different there.
    Differs,
    /// Nobody can tell: something could not be read, or removed, or the observer stopped it.
    Unknown,
    /// It is not known to be a copy, and was not touched.
    NotMarked,
};

/// Which of the two is the later one.
enum class MarkIs
{
    OnCopy,
    OnOriginal,
};

/// Finishes a move to another file system that the end of the process cut short: removes `copy` as far as the same
/// thing also stands at `original`, which is not touched. Both are absolute paths. `identity` is that of the original
/// as the caller has found it. If the mark is on the original, that is what was being made, and gets the mode that it
/// lacks.
///
/// Nothing goes without a mark, except where marks are impossible. A file is the same if it is equal in size, time of
/// change and every byte; of a folder goes what is the same in it, under the same name. Of two names of one file, one
/// goes.
Duplicate removeDuplicate(const QString& copy, const QString& original, const FileIdentity& identity, MarkIs mark,
                          WorkObserver* observer = nullptr);

/// Whether it carries the mark.
[[nodiscard]] bool isUnfinished(const QString& path);

/// Takes the mark off the copy once it is on the disk that `original`, another path, is gone or has changed.
void forgetCopy(const QString& copy, const QString& original);

} // namespace lapsa::fileSystem
