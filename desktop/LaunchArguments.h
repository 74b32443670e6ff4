// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QUrl>

#include <future>

namespace lapsa {

/// The files named by the launch arguments, in order: file URLs, and paths, which are relative to `workingFolder`
/// unless absolute. There are no options: every argument names a file, whatever it looks like. Arguments that are not
/// valid UTF-8 are skipped. Does not check whether the files exist.
[[nodiscard]] QList<QUrl> filesOfArguments(const QList<QByteArray>& arguments, const QByteArray& workingFolder);

/// The arguments that name nothing Lapsa could add, in order and as given: the file does not exist, or cannot be named
/// here. Bytes that are not UTF-8 appear as replacement characters.
[[nodiscard]] QStringList argumentsThatNameNothing(const QList<QByteArray>& arguments, const QByteArray& workingFolder);

/// Logs the arguments that name nothing. Looks at them on a thread of its own, because a disk may not respond; it goes
/// on after the future is gone.
[[nodiscard]] std::future<void> logWhatNamesNothing(const QList<QByteArray>& arguments,
                                                    const QByteArray& workingFolder);

} // namespace lapsa
