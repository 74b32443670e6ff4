// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

namespace lapsa {

/// Starts a program that runs independently: in its own session, without input or output, and with no signal blocked.
/// Returns at once; false if the program could not be started.
///
/// Not QProcess::startDetached(): its child inherits the signals blocked by TerminationSignals, so SIGTERM would not
/// end it, and Qt 6.4 does not call the child process modifier that could unblock them.
bool startDetached(const QList<QByteArray>& command);

} // namespace lapsa
