// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/stat.h>

#include <cerrno>

namespace lapsa {

/// Gives the open file `to` what `from` has besides its content: owner (as far as permitted), extended attributes with
/// access lists and capabilities, project, mode and times of `status`. Both may be opened with O_PATH, so that it works
/// for every kind of file. Returns an `errno` value.
[[nodiscard]] int copyAttributes(int from, int to, const struct statx& status);

/// Of a copy that was refused its mode, by an `errno` value: EPERM is no failure. It is this user's own, so that only a
/// file system that keeps no such modes, as FAT, refuses it that way.
[[nodiscard]] inline int unlessNoModesAreKept(int error)
{
    return error == EPERM ? 0 : error;
}

/// Takes away the access lists that a new file inherited from the folder it was made in.
void dropInheritedAccessLists(int file);

} // namespace lapsa
