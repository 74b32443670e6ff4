// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QString>

namespace lapsa::fileSystem {

/// Gives a file another path on the same file system, which must be free; a link at the end of `path` is followed. The
/// file need not be readable. EISDIR or EINVAL for what is no file, EXDEV where `to` is on another file system.
Result<void> putAside(const QString& path, const QString& to);

} // namespace lapsa::fileSystem
