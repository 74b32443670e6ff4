// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace lapsa {

/// How many copies of each file are kept; the oldest are removed.
inline constexpr int mostKeptFiles = 10;

/// Keeps a copy (mode 0600) of a non-empty file of the data folder that is about to be replaced, and logs where:
/// "settings-3.json" is the third copy of settings.json. A missing or empty file is not kept, nor one equal to its last
/// copy. An unreadable file is moved aside: among the copies, or within the data folder if those are on another file
/// system. A failure is one line in the log; the caller goes on and replaces the file.
void keepCopyOf(const QString& file);

} // namespace lapsa
