// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lapsa::test {

/// A system call that names a path, as strace wrote it down.
struct PathCall
{
    qint64 thread = 0;
    QString name;
    /// Absolute and clean.
    QStringList paths;
};

/// What strace writes with `-f -y -e trace=%file`.
[[nodiscard]] QStringList traceOfPaths(const QString& file);

/// Nothing if the line is no call, or the end of one that another thread interrupted.
[[nodiscard]] std::optional<PathCall> pathCallOf(const QString& line);

[[nodiscard]] QStringList linesOf(const QString& file);

/// Whether the process has ended with status 0.
[[nodiscard]] bool hasEnded(qint64 process, const QStringList& lines);

/// Whether another thread than this one made a call with the path.
[[nodiscard]] bool othersTouch(const QString& path, qint64 thread, const QStringList& lines);

/// Whether a path is one of the folders, or below one.
[[nodiscard]] bool isBelow(const QString& path, const QStringList& folders);

} // namespace lapsa::test
