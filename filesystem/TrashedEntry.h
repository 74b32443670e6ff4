// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileIdentity.h"

#include <QString>

namespace lapsa::fileSystem {

/// An entry that was moved to the Trash, and its record there.
struct TrashedEntry
{
    /// Absolute.
    QString path;
    QString recordPath;
    FileIdentity identity;
    FileIdentity recordIdentity;

    friend bool operator==(const TrashedEntry&, const TrashedEntry&) = default;
};

} // namespace lapsa::fileSystem
