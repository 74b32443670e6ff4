// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <optional>

namespace lapsa::test {

/// While one stands, a wait that takes longer than a minute is cut short (EINTR). One at a time in a process.
class Deadline final
{
public:
    Deadline();
    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;
    ~Deadline();

    /// Whether the time of the last one is over.
    [[nodiscard]] static bool isOver();
};

/// The next wait status of a process or thread; nothing when the time is over.
[[nodiscard]] std::optional<int> waitFor(pid_t process);

} // namespace lapsa::test
