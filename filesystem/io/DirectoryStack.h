// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "FileDescriptor.h"

#include <cstddef>
#include <vector>

namespace lapsa {

/// The folders from where a walk started down to the one it is in. Only the lowest few are kept open, so that a walk
/// may go down thousands of folders; the way back up leads over "..", and is checked. No step follows a link or enters
/// a mount.
class DirectoryStack final
{
public:
    /// Starts in a folder, which stays open.
    explicit DirectoryStack(SharedDescriptor start);

    /// Enters a folder of the one the walk is in. Returns an `errno` value: EBUSY for a mount point.
    [[nodiscard]] int descend(const char* name);
    /// Goes back to the folder above. Returns an `errno` value: ESTALE when the folder was moved away meanwhile.
    [[nodiscard]] int ascend();

    /// The folder the walk is in.
    [[nodiscard]] int folder() const { return m_steps.back().folder.get(); }

    /// How that folder looked when it was entered. Not known of the start.
    [[nodiscard]] const struct statx& status() const { return m_steps.back().status; }

private:
    struct Step
    {
        SharedDescriptor folder;
        struct statx status = {};
    };

    std::vector<Step> m_steps;
};

} // namespace lapsa
