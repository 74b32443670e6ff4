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
    /// Opened with O_PATH.
    SharedDescriptor folder;
    /// Why it could not be opened, an `errno` value.
    int error = EINVAL;
};

/// The bytes of a name that means one entry of a folder; EINVAL for all others.
[[nodiscard]] Result<QByteArray> entryName(const QString& name);

/// What a look at an entry of an open folder (at least STATX_TYPE, STATX_INO and STATX_NLINK) has found.
[[nodiscard]] fileSystem::EntryInfo entryInfo(int folder, const struct statx& status);

} // namespace lapsa
