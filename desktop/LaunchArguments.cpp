// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaunchArguments.h"

#include "FileUri.h"

#include <optional>

namespace lapsa {

namespace {

QByteArray absolute(const QByteArray& path, const QByteArray& workingFolder)
{
    if (!path.startsWith('/')) {
        return workingFolder.isEmpty() ? QByteArray() : workingFolder + '/' + path;
    }
    // A URL would take what follows two slashes for the name of a machine.
    qsizetype slashes = 1;
    while (slashes < path.size() && path.at(slashes) == '/') {
        ++slashes;
    }
    return path.sliced(slashes - 1);
}

std::optional<QString> pathOf(const QByteArray& argument, const QByteArray& workingFolder)
{
    if (argument.isEmpty()) {
        return std::nullopt;
    }
    if (const std::optional<QString> path = pathOfFileUri(argument)) {
        return path;
    }
    const QByteArray path = absolute(argument, workingFolder);
    return path.isEmpty() ? std::nullopt : textOfUtf8(path);
}

} // namespace

QList<QUrl> filesOfArguments(const QList<QByteArray>& arguments, const QByteArray& workingFolder)
{
    QList<QUrl> files;
    for (const QByteArray& argument : arguments) {
        if (const std::optional<QString> path = pathOf(argument, workingFolder)) {
            files.push_back(QUrl::fromLocalFile(*path));
        }
    }
    return files;
}

} // namespace lapsa
