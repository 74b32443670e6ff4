// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

namespace lapsa {

/// Whether this user is the only member of a group: many systems give each user a group of the same name that may write
/// to all of the user's files.
[[nodiscard]] bool isPrivateGroup(gid_t group);

} // namespace lapsa
