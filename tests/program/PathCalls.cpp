// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PathCalls.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace lapsa::test {

using namespace Qt::StringLiterals;

QStringList traceOfPaths(const QString& file)
{
    // With -D, the tracer is the child, and the program has the process ID that was started.
    const QStringList calls{u"-f"_s, u"--seccomp-bpf"_s, u"-y"_s, u"-o"_s, file, u"-e"_s, u"trace=%file"_s};
    // The leak checker of the address sanitizer is a tracer itself, and ends a traced program with an error.
    return QStringList{u"strace"_s, u"-D"_s, u"-E"_s, u"LSAN_OPTIONS=detect_leaks=0"_s} + calls;
}

std::optional<PathCall> pathCallOf(const QString& line)
{
    static const QRegularExpression call(uR"(^(\d+) +(\w+)\((.*))"_s);
    // A path, and in front of it the open folder that it is relative to.
    static const QRegularExpression path(uR"--((?:(?:AT_FDCWD|\d+)<([^>]*)>, )?"((?:[^"\\]|\\.)*)")--"_s);
    const QRegularExpressionMatch parts = call.match(line);
    if (!parts.hasMatch()) {
        return std::nullopt;
    }
    PathCall found{.thread = parts.captured(1).toLongLong(), .name = parts.captured(2), .paths = {}};
    // What else these calls write in quotes is no path, or one that is not looked at.
    const bool onlyFirst = found.name == u"execve" || found.name.startsWith(u"readlink") ||
                           found.name.startsWith(u"symlink") || found.name.contains(u"xattr");
    for (const QRegularExpressionMatch& match : path.globalMatch(parts.captured(3))) {
        const QString folder = match.captured(1).startsWith(u'/') ? match.captured(1) : u"/"_s;
        found.paths.push_back(QDir::cleanPath(QDir(folder).absoluteFilePath(match.captured(2))));
        if (onlyFirst) {
            break;
        }
    }
    return found;
}

QStringList linesOf(const QString& file)
{
    QFile trace(file);
    return trace.open(QIODevice::ReadOnly) ? QString::fromUtf8(trace.readAll()).split(u'\n') : QStringList();
}

bool hasEnded(qint64 process, const QStringList& lines)
{
    return std::ranges::any_of(lines, [begin = QString::number(process) + u' '](const QString& line) {
        return line.startsWith(begin) && line.endsWith(u"+++ exited with 0 +++");
    });
}

bool othersTouch(const QString& path, qint64 thread, const QStringList& lines)
{
    return std::ranges::any_of(lines, [&](const QString& line) {
        const std::optional<PathCall> call = pathCallOf(line);
        return call && call->thread != thread && call->paths.contains(path);
    });
}

bool isBelow(const QString& path, const QStringList& folders)
{
    return std::ranges::any_of(
        folders, [&path](const QString& folder) { return path == folder || path.startsWith(folder + u'/'); });
}

} // namespace lapsa::test
