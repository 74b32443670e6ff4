// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>

namespace lapsa {

/// Lets others on the same disk go first while this thread does something long. Put back with this object.
class LowIoPriority final
{
public:
    LowIoPriority() = default;
    LowIoPriority(const LowIoPriority&) = delete;
    LowIoPriority& operator=(const LowIoPriority&) = delete;
    ~LowIoPriority();

    /// Lowers the priority of the calling thread, which must be the one that destroys this object. Does nothing the
    /// second time, where the priority is as low already, or where the system has none.
    void lower();

private:
    /// What to put back.
    std::optional<int> m_before;
    bool m_asked = false;
};

} // namespace lapsa
