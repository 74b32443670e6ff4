// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <QByteArray>
#include <QByteArrayView>

#include <sys/types.h>

namespace lapsa {

/// openat(2) with O_CLOEXEC.
[[nodiscard]] Result<FileDescriptor> openAt(int folder, const char* path, int flags, mode_t mode = 0);

/// readlinkat(2). EINVAL if it is not a link.
[[nodiscard]] Result<QByteArray> readLinkAt(int folder, const char* path);

/// Writes all of the bytes. Returns an `errno` value.
[[nodiscard]] int writeAll(int file, QByteArrayView bytes);

/// Makes the names in an open folder durable; it may be open with O_PATH. Returns an `errno` value: EACCES if the
/// folder cannot be opened for reading.
[[nodiscard]] int syncFolder(int folder);

/// The same, also for a folder that accepts files but cannot be opened.
[[nodiscard]] int syncNames(int folder);

} // namespace lapsa
