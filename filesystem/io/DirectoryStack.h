// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "FileDescriptor.h"

#include <cstddef>
#include <vector>

namespace lapsa {

/// The folders from the start of a walk down to its current one. Only the lowest few stay open, so that a walk can be
/// thousands of folders deep; the way back up uses "..", and is checked. No step follows a link or enters a mount.
class DirectoryStack final
{
public:
    /// Starts in the folder `start`, which stays open.
    explicit DirectoryStack(SharedDescriptor start);

    /// Enters a subfolder of the current folder. Returns an `errno` value: EBUSY for a mount point.
    [[nodiscard]] int descend(const char* name);
    /// Returns to the folder above. Returns an `errno` value: ESTALE if the current folder was moved away meanwhile.
    [[nodiscard]] int ascend();

    /// The current folder.
    [[nodiscard]] int folder() const { return m_steps.back().folder.get(); }

    /// How that folder looked when it was entered. Unknown for the start.
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
