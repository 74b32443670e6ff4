// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace lapsa {

/// What a lane is doing, or has done, with the file of an item, for the user to see.
struct ItemWork
{
    enum class Kind
    {
        /// Copied to another file system. Counts bytes.
        Moving,
        /// Removed for good. Counts files and folders.
        Removing,
        /// Its disk does not answer. Counts nothing.
        WaitingForDisk,
        /// Not removed for good to the end. Counts the files that are left; negative if it is not known.
        Stopped,
    };

    Kind kind = Kind::Moving;
    std::int64_t done = 0;
    /// 0 if it is not known.
    std::int64_t total = 0;

    friend bool operator==(const ItemWork&, const ItemWork&) = default;
};

} // namespace lapsa
