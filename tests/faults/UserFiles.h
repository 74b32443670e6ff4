// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

namespace lapsa::test {

/// Makes a file of `size` bytes that no other has, with a mode, a time and an attribute of its own, and all folders
/// above it.
void makeUserFile(const QString& path, int size = 2000);

/// Makes a folder of everything that a user's folder can hold: files in folders, hard links, links to elsewhere, a
/// pipe, a hole, and names that are hard to write.
void makeUserFolder(const QString& path);

/// Names of single files, an ordinary one first: as long as names can be, of several lines, written backwards.
[[nodiscard]] QStringList oddNames();

} // namespace lapsa::test
