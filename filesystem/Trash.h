// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

namespace lapsa {

/// Moves a file, link or whole folder to the user's Trash, from where the desktop can put it back (freedesktop Trash
/// rules 1.0: the home trash, or the trash folder of the volume that holds the file). Never copies across volumes. A
/// failure leaves the file where it was and nothing in the trash. EPERM and EINVAL as for fileSystem::move().
Result<void> moveToTrash(const QString& path, const fileSystem::Protection& protection);

} // namespace lapsa
