// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace lapsa::test {

/// Everything that can be seen of a file, link or whole folder, one line an entry, sorted: kind, mode, owner, size,
/// time to the nanosecond, content, target, extended attributes, and which names are the same file. Names stand as raw
/// bytes. Two trees are alike when their lines are equal. Empty when there is nothing.
[[nodiscard]] QList<QByteArray> treeAt(const QString& path);

/// The raw names in a folder, sorted.
[[nodiscard]] QList<QByteArray> rawNames(const QString& folder);

/// The content of a file; null when it cannot be read.
[[nodiscard]] QByteArray contentOf(const QString& path);

/// Writes a file whose path may be any bytes.
void makeRawFile(const QByteArray& path, const QByteArray& content = "content\n");

} // namespace lapsa::test
