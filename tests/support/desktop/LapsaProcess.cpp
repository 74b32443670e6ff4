// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"

#include "TemporaryHome.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <sys/prctl.h>
#include <sys/types.h>

#include <csignal>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 60'000;

} // namespace

LapsaProcess::LapsaProcess(const QStringList& command, const QStringList& arguments, const QString& workingFolder)
{
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    if (!workingFolder.isEmpty()) {
        m_process.setWorkingDirectory(workingFolder);
    }
    QStringList line = command + QStringList{program()} + arguments;
    const QString first = line.takeFirst();
    m_process.start(first, line);
    if (!m_process.waitForStarted(patience)) {
        qFatal("cannot start Lapsa");
    }
}

LapsaProcess::~LapsaProcess()
{
    if (running()) {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
}

QString LapsaProcess::program()
{
    return QStringLiteral(LAPSA_PROGRAM);
}

void LapsaProcess::send(int signal) const
{
    ::kill(pid_t(m_process.processId()), signal);
}

int LapsaProcess::exitCode()
{
    if (running() && !m_process.waitForFinished(patience)) {
        return -1;
    }
    return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

int LapsaProcess::terminate()
{
    send(SIGTERM);
    return exitCode();
}

QJsonArray storedList(const TemporaryHome& home, const QString& file)
{
    return QJsonDocument::fromJson(home.dataFile(file)).array();
}

QStringList storedPaths(const TemporaryHome& home)
{
    QStringList paths;
    for (const QJsonValue& item : storedList(home, u"state.json"_s)) {
        paths.push_back(item[u"path"_s].toString());
    }
    return paths;
}

} // namespace lapsa::test
