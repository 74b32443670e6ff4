// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <vector>

namespace lapsa {

/// Which parts of a stretch of a file were in the page cache before a copy read it: these are in use and must stay.
class CachedParts final
{
public:
    /// Looks. `file` is open for reading.
    CachedParts(int file, off_t start, off_t end);

    /// Takes out of the page cache what was not in it before, from the start of the stretch to `place` in it. Call it
    /// as the copy goes on, and at its end.
    void dropUpTo(off_t place);

private:
    /// In bytes; a multiple of every page size.
    static constexpr off_t partLength = off_t{1} << 20;

    void look(off_t start, off_t end);

    int m_file;
    off_t m_start;
    /// The place of the last call.
    off_t m_dropped;
    /// The number of the part in which the stretch begins.
    off_t m_first;
    /// For each part, whether any page of it was cached.
    std::vector<bool> m_cached;
};

} // namespace lapsa
