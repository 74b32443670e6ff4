// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

namespace lapsa::test {

/// What this process holds of the machine. Two of them tell whether something grew between.
struct ProcessFigures
{
    /// What is allocated and not freed (mallinfo2); 0 under an allocator that keeps no such account.
    qint64 allocatedBytes = 0;
    /// What stands in memory (/proc/self/statm), after what is free was given back.
    qint64 residentBytes = 0;
    /// Open file descriptors.
    qint64 descriptors = 0;

    [[nodiscard]] static ProcessFigures now();
};

} // namespace lapsa::test
