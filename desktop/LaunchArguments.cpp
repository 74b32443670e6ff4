// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaunchArguments.h"

#include "FileSystem.h"
#include "FileUri.h"
#include "SystemLog.h"

#include <algorithm>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// With the slash, so that a file named "file:notes" in the working folder can be named too.
constexpr QByteArrayView fileUriStart = "file:/";

QByteArray absolute(const QByteArray& path, const QByteArray& workingFolder)
{
    if (path.startsWith('/')) {
        return withOneLeadingSlash(path);
    }
    // The working folder can be "/" itself.
    return workingFolder.isEmpty() ? QByteArray() : withOneLeadingSlash(workingFolder + '/' + path);
}

std::optional<QString> pathOf(const QByteArray& argument, const QByteArray& workingFolder)
{
    if (argument.isEmpty()) {
        return std::nullopt;
    }
    if (argument.first(std::min(argument.size(), fileUriStart.size())).compare(fileUriStart, Qt::CaseInsensitive) ==
        0) {
        return pathOfFileUri(argument);
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

QStringList argumentsThatNameNothing(const QList<QByteArray>& arguments, const QByteArray& workingFolder)
{
    QStringList nothing;
    for (const QByteArray& argument : arguments) {
        const std::optional<QString> path = pathOf(argument, workingFolder);
        if (!path || !fileSystem::exists(*path)) {
            nothing.push_back(QString::fromUtf8(argument));
        }
    }
    return nothing;
}

std::future<void> logWhatNamesNothing(const QList<QByteArray>& arguments, const QByteArray& workingFolder)
{
    std::promise<void> done;
    std::future<void> result = done.get_future();
    const auto work = [arguments, workingFolder](std::promise<void> promise) {
        for (const QString& argument : argumentsThatNameNothing(arguments, workingFolder)) {
            systemLog(u"Lapsa found no file to add: \""_s + argument + u'"');
        }
        promise.set_value();
    };
    try {
        std::thread(work, std::move(done)).detach();
    } catch (const std::system_error&) {
        // No thread is to be had: nobody is told, and the start goes on.
    }
    return result;
}

} // namespace lapsa
