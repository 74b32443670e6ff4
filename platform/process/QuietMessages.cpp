// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "QuietMessages.h"

#include "SystemLog.h"

#include <QString>
#include <QtGlobal>

#include <cstdlib>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

bool startingUp = true;

void passFatalOnly(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type != QtFatalMsg) {
        return;
    }
    systemLog(u"Lapsa cannot go on: "_s + text);
    if (startingUp) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

void QuietMessages::install()
{
    qInstallMessageHandler(passFatalOnly);
}

void QuietMessages::startupDone()
{
    startingUp = false;
}

} // namespace lapsa
