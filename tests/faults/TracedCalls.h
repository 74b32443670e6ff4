// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

namespace lapsa::test {

/// A system call on files, which a fault can be injected into.
struct TracedCall
{
    long number = -1;
    const char* name = "";
    /// Which argument is a path, counted from 0.
    std::optional<int> path = std::nullopt;
    /// Which argument says how many bytes are wanted: a call with one can come out short.
    std::optional<int> count = std::nullopt;
};

/// The call of that number; nullptr for one that has nothing to do with files.
[[nodiscard]] const TracedCall* tracedCall(long number);

/// From now on this process stops at every traced call, for the one who traces it. What it writes to its standard error
/// is left alone.
[[nodiscard]] bool stopAtTracedCalls();

} // namespace lapsa::test
