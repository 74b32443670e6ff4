// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

namespace lapsa::test {

/// What this process holds of the machine. Two of them tell whether something grew between.
struct ProcessFigures
{
    /// Sanitizers bring an allocator of their own, which keeps what is freed for a while: then memory says nothing, and
    /// the leaks are theirs to find.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    static constexpr bool memoryTells = false;
#else
    static constexpr bool memoryTells = true;
#endif

    /// What is allocated and not freed (mallinfo2).
    qint64 allocatedBytes = 0;
    /// What stands in memory (/proc/self/statm), after what is free was given back.
    qint64 residentBytes = 0;
    /// Open file descriptors.
    qint64 descriptors = 0;

    [[nodiscard]] static ProcessFigures now();

    /// What stands in memory, with what is free and was not given back.
    [[nodiscard]] static qint64 residentBytesUntouched();
};

} // namespace lapsa::test
