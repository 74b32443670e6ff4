// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

#include <algorithm>
#include <chrono>

namespace lapsa {

/// How many bytes to handle in one step: few enough that a step ends well within a second, however slow the disk is.
class StepLength final
{
public:
    [[nodiscard]] off_t bytes() const { return m_bytes; }

    /// Call these around a step.
    void begin() { m_began = std::chrono::steady_clock::now(); }

    void end()
    {
        const auto took = std::chrono::steady_clock::now() - m_began;
        if (took < std::chrono::milliseconds(50)) {
            m_bytes = std::min(longest, m_bytes * 2);
        } else if (took > std::chrono::milliseconds(200)) {
            m_bytes = std::max(shortest, m_bytes / 4);
        }
    }

private:
    static constexpr off_t shortest = off_t{64} << 10;
    static constexpr off_t longest = off_t{16} << 20;

    off_t m_bytes = off_t{256} << 10;
    std::chrono::steady_clock::time_point m_began;
};

} // namespace lapsa
