// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QProcess>
#include <QStringList>

namespace lapsa::test {

/// A program of the system that stands by a test: it is started with this object and ended with it.
class HelperProcess final
{
public:
    /// Ends the test run when the program cannot be started.
    explicit HelperProcess(const QString& program, const QStringList& arguments = {});
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;
    ~HelperProcess();

    /// The next line that it writes to standard output; ends the test run when none comes.
    [[nodiscard]] QString readLine();

    [[nodiscard]] bool running() const { return m_process.state() == QProcess::Running; }

    /// Ends it at once, as a crash would.
    void kill();

private:
    QProcess m_process;
};

/// A daemon of a desktop, which lies in a folder of its own for each architecture: its path below that folder. Ends the
/// test run when it is not installed.
[[nodiscard]] QString foundProgram(const QString& relative);

/// What a short-lived program writes to standard output.
[[nodiscard]] QByteArray outputOf(const QString& program, const QStringList& arguments);

} // namespace lapsa::test
