// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace lapsa {

/// How many copies of each file are kept; the oldest go.
inline constexpr int mostKeptFiles = 10;

/// Keeps a copy (mode 0600) of a file of the data folder that is about to be replaced though it holds something, and
/// says in the log where: "settings-3.json" is the third copy of settings.json. A file that is missing or empty is not
/// kept, nor one whose last copy says the same. One that cannot be read is put aside itself: among the copies, or in
/// the data folder where those are on another file system. A failure is one line in the log: whoever replaces the file
/// goes on.
void keepCopyOf(const QString& file);

} // namespace lapsa
