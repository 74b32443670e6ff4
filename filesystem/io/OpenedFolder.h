// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "AtPath.h"
#include "HeldFolder.h"

#include <QByteArray>

#include <sys/stat.h>

#include <cerrno>

namespace lapsa {

struct fileSystem::HeldFolder::Opened
{
    /// Open with O_PATH.
    SharedDescriptor folder;
    /// Why it could not be opened, an `errno` value.
    int error = EINVAL;
};

/// The bytes of a name of a single entry of a folder; EINVAL for other names.
[[nodiscard]] Result<QByteArray> entryName(const QString& name);

/// Describes an entry of an open folder by its status (at least STATX_TYPE, STATX_INO and STATX_NLINK).
[[nodiscard]] fileSystem::EntryInfo entryInfo(int folder, const struct statx& status);

} // namespace lapsa
