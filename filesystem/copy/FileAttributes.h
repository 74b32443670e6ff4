// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/stat.h>

#include <cerrno>

namespace lapsa {

/// Copies to the open file `to` all that `from` has besides its content: owner (as far as permitted), extended
/// attributes with access lists and capabilities, project, and the mode and times of `status`. Both may be open with
/// O_PATH, so it works for every kind of file. Returns an `errno` value.
[[nodiscard]] int copyAttributes(int from, int to, const struct statx& status);

/// The result of setting the mode of a copy, given its `errno` value: EPERM is not a failure. The copy belongs to this
/// user, so only a file system without such modes, like FAT, refuses it that way.
[[nodiscard]] inline int unlessNoModesAreKept(int error)
{
    return error == EPERM ? 0 : error;
}

/// Removes the access lists that a new file inherited from its folder.
void dropInheritedAccessLists(int file);

} // namespace lapsa
