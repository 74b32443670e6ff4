// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace lapsa {

/// Identifies a file independently of its path.
struct FileIdentity
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

struct FileIdentityHash
{
    std::size_t operator()(const FileIdentity& identity) const noexcept
    {
        return std::hash<std::uint64_t>()(identity.inode * 31 + identity.device);
    }
};

} // namespace lapsa
