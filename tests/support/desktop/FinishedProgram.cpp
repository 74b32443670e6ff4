// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FinishedProgram.h"

#include <QProcess>

#include <sys/prctl.h>

#include <csignal>

namespace lapsa::test {

FinishedProgram finished(const QString& program, const QStringList& arguments, const QString& workingFolder)
{
    constexpr int patience = 60'000;
    QProcess process;
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    process.setStandardInputFile(QProcess::nullDevice());
    if (!workingFolder.isEmpty()) {
        process.setWorkingDirectory(workingFolder);
    }
    process.start(program, arguments);
    if (!process.waitForStarted(patience)) {
        qFatal("cannot start %s", qUtf8Printable(program));
    }
    const bool ended = process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit;
    return {.code = ended ? process.exitCode() : -1,
            .output = process.readAllStandardOutput(),
            .errors = process.readAllStandardError()};
}

} // namespace lapsa::test
