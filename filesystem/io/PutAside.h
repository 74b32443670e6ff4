// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QString>

namespace lapsa::fileSystem {

/// Renames a file to `to`, which must be free and on the same file system; follows a link at the end of `path`. The
/// file need not be readable. EISDIR or EINVAL if it is not a file, EXDEV if `to` is on another file system.
Result<void> putAside(const QString& path, const QString& to);

} // namespace lapsa::fileSystem
