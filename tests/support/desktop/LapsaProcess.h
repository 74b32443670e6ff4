// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QJsonArray>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace lapsa::test {

class TemporaryHome;

/// The real program in a process of its own.
class LapsaProcess final
{
public:
    explicit LapsaProcess(const QStringList& arguments = {}, const QString& workingFolder = {})
        : LapsaProcess(QStringList(), arguments, workingFolder)
    {}

    /// Started by another command, which becomes the program (`strace -D`).
    [[nodiscard]] static LapsaProcess startedBy(const QStringList& command) { return {command, {}, {}}; }

    LapsaProcess(const LapsaProcess&) = delete;
    LapsaProcess& operator=(const LapsaProcess&) = delete;
    ~LapsaProcess();

    /// Where the program lies.
    [[nodiscard]] static QString program();

    void send(int signal) const;

    [[nodiscard]] qint64 pid() const { return m_process.processId(); }

    [[nodiscard]] bool running() const { return m_process.state() != QProcess::NotRunning; }

    /// Waits for its end; -1 when it does not end, or crashes.
    [[nodiscard]] int exitCode();
    /// Asks it to end and waits; its exit code.
    [[nodiscard]] int terminate();

    [[nodiscard]] QByteArray standardError() { return m_process.readAllStandardError(); }

private:
    LapsaProcess(const QStringList& command, const QStringList& arguments, const QString& workingFolder);

    QProcess m_process;
};

/// The list in a file of the data folder; empty when there is none, or none that is whole.
[[nodiscard]] QJsonArray storedList(const TemporaryHome& home, const QString& file);
/// The paths of the items on countdown, as stored.
[[nodiscard]] QStringList storedPaths(const TemporaryHome& home);

} // namespace lapsa::test
