// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EntryCopy.h"
#include "FileDescriptor.h"
#include "Result.h"

#include <chrono>
#include <functional>

namespace lapsa {

/// A regular file, open to be copied or to be removed after that. While it is open, a read lease tells when somebody
/// opens it for writing: sizes and times do not show a writer who has it mapped already or resets its times. The writer
/// waits meanwhile, so close it soon after wanted() returns true.
class SourceFile final
{
public:
    /// EBUSY or ENOENT if it is no longer the entry that was found, ETXTBSY if somebody has it open for writing. If
    /// leases are unavailable (somebody else's file, some network file systems), it opens without one.
    [[nodiscard]] static Result<SourceFile> open(const FoundEntry& entry);

    [[nodiscard]] int get() const { return m_file.get(); }

    /// Whether somebody wants to write.
    [[nodiscard]] bool wanted() const;

    /// Whether the file still looks like `status` and nobody can have written to it since it was opened.
    [[nodiscard]] bool isStill(const struct statx& status) const;

    /// Gives the lease up, so that whoever waits to write can, and waits until nobody has the file open for writing;
    /// then it is leased again. False if `patience` ends first. Calls `alive` now and then.
    bool awaitWriters(std::chrono::milliseconds patience, const std::function<void()>& alive);

private:
    SourceFile(FileDescriptor file, bool leased);

    FileDescriptor m_file;
    bool m_leased;
};

} // namespace lapsa
