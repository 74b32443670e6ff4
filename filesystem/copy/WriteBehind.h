// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "StepLength.h"

#include <sys/types.h>

#include <deque>

namespace lapsa {

/// Has the parts of a large copy written to the disk soon after they were copied, so that the sync at the end is short,
/// and takes them out of the page cache then: nobody will read the copy soon, but the user's other files may be in use.
class WriteBehind final
{
public:
    /// The most bytes to copy before the next add().
    [[nodiscard]] off_t mostBytes() const { return m_length.bytes(); }

    /// Starts writing a part of the open file `to`, which may be closed after this, and waits for earlier parts if
    /// there are many. Returns an `errno` value.
    [[nodiscard]] int add(int to, off_t start, off_t end);

    /// Waits for the earliest part; nothing if there is none. Returns an `errno` value.
    [[nodiscard]] int finishOne();

    [[nodiscard]] bool isEmpty() const { return m_parts.empty(); }

private:
    struct Part
    {
        FileDescriptor file;
        off_t start = 0;
        off_t end = 0;
    };

    StepLength m_length;
    std::deque<Part> m_parts;
    off_t m_bytes = 0;
};

} // namespace lapsa
