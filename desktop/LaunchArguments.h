// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QUrl>

namespace lapsa {

/// The files that the arguments of a start name, in their order: paths, taken from `workingFolder` where they are
/// relative, and file URLs. There are no options: whatever an argument looks like, it names a file. One that is no
/// valid UTF-8 is skipped. Whether there is such a file is not asked here.
[[nodiscard]] QList<QUrl> filesOfArguments(const QList<QByteArray>& arguments, const QByteArray& workingFolder);

/// Those of the arguments that name nothing Lapsa could add, in their order and as they were given: there is no such
/// file, or it cannot be said here. Bytes that are not UTF-8 read as replacement marks.
[[nodiscard]] QStringList argumentsThatNameNothing(const QList<QByteArray>& arguments, const QByteArray& workingFolder);

} // namespace lapsa
