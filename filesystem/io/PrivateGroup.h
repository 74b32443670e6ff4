// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <sys/types.h>

namespace lapsa {

/// Whether a group has nobody in it but this user: many systems give each user a group of his own name, and let it
/// write whatever he makes.
[[nodiscard]] bool isPrivateGroup(gid_t group);

} // namespace lapsa
