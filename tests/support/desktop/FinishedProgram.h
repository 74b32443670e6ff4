// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace lapsa::test {

/// What came of a program that was run to its end.
struct FinishedProgram
{
    /// -1 if it did not end by itself.
    int code = -1;
    QByteArray output;
    QByteArray errors;
};

/// Runs it with nothing to read, in a folder of one's choice. Ends the test run when it cannot be started.
[[nodiscard]] FinishedProgram finished(const QString& program, const QStringList& arguments,
                                       const QString& workingFolder = {});

} // namespace lapsa::test
