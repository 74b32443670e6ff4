// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ScreenReader.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QRegularExpression>
#include <QThread>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

/// Only a limit for a machine under load; reached when something is broken.
constexpr int patience = 60'000;
constexpr const char* bridgeVariable = "NO_AT_BRIDGE";

constexpr const char* customizations = R"(import orca.debug
import orca.settings
# Each line at once: what was said last would wait for what is said next.
orca.debug.debugFile.reconfigure(line_buffering=True)
orca.settings.enableKeyEcho = False
orca.settings.enablePositionSpeaking = True
)";

void write(const QString& path, const char* content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) < 0) {
        qFatal("cannot write %s", qPrintable(path));
    }
}

} // namespace

ScreenReader::ScreenReader()
    : m_previousBridge(qgetenv(bridgeVariable))
    , m_previousPath(qgetenv("PATH"))
{
    write(path(u"orca-customizations.py"_s), customizations);
    // Orca looks for others by this program, and does not start beside one. The user's own is none of its business.
    write(path(u"pgrep"_s), "#!/bin/sh\nexit 1\n");
    QFile::setPermissions(path(u"pgrep"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", m_folder.path().toLocal8Bit() + ':' + m_previousPath);
    qputenv(bridgeVariable, "0");
    m_bus.emplace(u"/usr/libexec/at-spi-bus-launcher"_s,
                  QStringList{u"--launch-immediately"_s, u"--a11y=1"_s, u"--screen-reader=1"_s});
    m_orca.emplace(u"orca"_s, QStringList{u"--user-prefs"_s, m_folder.path(), u"--debug-file"_s, path(u"orca.log"_s)});
    constexpr unsigned long betweenLooks = 50;
    const QDeadlineTimer deadline(patience);
    while (said().isEmpty()) { // "Screen reader on."
        if (deadline.hasExpired()) {
            qFatal("the screen reader does not come up");
        }
        QThread::msleep(betweenLooks);
    }
}

ScreenReader::~ScreenReader()
{
    m_orca.reset();
    m_bus.reset();
    qputenv("PATH", m_previousPath);
    if (m_previousBridge.isNull()) {
        qunsetenv(bridgeVariable);
    } else {
        qputenv(bridgeVariable, m_previousBridge);
    }
}

QStringList ScreenReader::said() const
{
    QFile file(path(u"orca.log"_s));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    static const QRegularExpression output(u"SPEECH OUTPUT: '(.*)' ?\\{"_s);
    QStringList lines;
    for (const QRegularExpressionMatch& match : output.globalMatch(QString::fromUtf8(file.readAll()))) {
        lines.push_back(match.captured(1));
    }
    return lines;
}

} // namespace lapsa::test
