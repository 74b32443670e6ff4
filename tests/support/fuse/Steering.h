// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>

namespace lapsa::test {

/// What the test wants of the disk. The calls ask it, each on a thread of its own.
class Steering final
{
public:
    /// Call this before a call is carried out on an entry of the mount: waits as long as the test wants.
    void begin(const char* path);

    /// The answer to a call that changes names: `error` is 0 or an `errno` value of what really happened.
    [[nodiscard]] int answer(int error) const;

    /// Obeys the commands of SteeredDisk on this socket until its other end is closed.
    void obey(int control);

private:
    void obeyLine(const std::string& line);
    [[nodiscard]] bool isStopped(const char* path) const;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    /// The entry on which calls stop; empty for all of them.
    std::optional<std::string> m_stopped;
    int m_waiting = 0;
    std::atomic<int> m_delay = 0;
    std::atomic<int> m_lost = 0;
};

} // namespace lapsa::test
