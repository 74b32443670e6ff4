// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryCopy.h"
#include "FileDescriptor.h"
#include "Result.h"

namespace lapsa {

/// A regular file that is opened to be copied, or to be removed once it was. As long as it is open a read lease tells
/// when somebody opens it for writing: sizes and times do not tell of one who has it mapped already, or puts its times
/// back. Who comes to write waits meanwhile, so that it must not stay open for long after wanted() tells of him.
class SourceFile final
{
public:
    /// An `errno` value where it is no longer the entry that was found. ETXTBSY where somebody has it open for writing.
    /// Where leases are not to be had (somebody else's file, some network file systems) there is none, and no failure.
    [[nodiscard]] static Result<SourceFile> open(const FoundEntry& entry);

    [[nodiscard]] int get() const { return m_file.get(); }

    /// Whether somebody wants to write.
    [[nodiscard]] bool wanted() const;

    /// Whether the file cannot have been written to since it was opened, and how it looks now, is `status`.
    [[nodiscard]] bool isStill(const struct statx& status) const;

private:
    SourceFile(FileDescriptor file, bool leased);

    FileDescriptor m_file;
    bool m_leased;
};

} // namespace lapsa
