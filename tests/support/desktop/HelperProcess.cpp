// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>

#include <sys/prctl.h>

#include <csignal>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 20'000;

} // namespace

HelperProcess::HelperProcess(const QString& program, const QStringList& arguments)
{
    m_process.setStandardErrorFile(QProcess::nullDevice());
    // A test that crashes leaves nothing behind.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(program, arguments);
    if (!m_process.waitForStarted(patience)) {
        qFatal("cannot start %s", qPrintable(program));
    }
}

HelperProcess::~HelperProcess()
{
    constexpr int politePatience = 2000;
    m_process.terminate();
    if (!m_process.waitForFinished(politePatience)) {
        kill();
    }
}

QString HelperProcess::readLine()
{
    const QDeadlineTimer deadline(patience);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(int(deadline.remainingTime()))) {
            qFatal("%s tells nothing", qPrintable(m_process.program()));
        }
    }
    return QString::fromUtf8(m_process.readLine()).trimmed();
}

void HelperProcess::kill()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

QString foundProgram(const QString& relative)
{
    for (const QString& folder : QDir(u"/usr/lib"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString path = u"/usr/lib/"_s + folder + u'/' + relative;
        if (QFile::exists(path)) {
            return path;
        }
    }
    qFatal("%s is not installed", qPrintable(relative));
}

QByteArray outputOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(patience)) {
        qFatal("%s does not end", qPrintable(program));
    }
    return process.readAllStandardOutput();
}

} // namespace lapsa::test
