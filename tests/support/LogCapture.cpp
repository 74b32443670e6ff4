// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"

#include <QFile>

#include <unistd.h>

#include <cstdio>

namespace lapsa::test {

LogCapture::LogCapture()
{
    if (!m_file.open()) {
        qFatal("no temporary file for the log");
    }
    std::fflush(stderr);
    m_standardError = ::dup(STDERR_FILENO);
    ::dup2(m_file.handle(), STDERR_FILENO);
}

LogCapture::~LogCapture()
{
    std::fflush(stderr);
    ::dup2(m_standardError, STDERR_FILENO);
    ::close(m_standardError);
}

QStringList LogCapture::lines() const
{
    std::fflush(stderr);
    QFile written(m_file.fileName());
    if (!written.open(QIODevice::ReadOnly)) {
        qFatal("the captured log cannot be read");
    }
    QStringList lines = QString::fromUtf8(written.readAll()).split(u'\n');
    lines.removeLast(); // what follows the last line break
    return lines;
}

} // namespace lapsa::test
