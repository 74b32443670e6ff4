// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

namespace lapsa {

/// Starts a program that goes on by itself: with its own session, no input, nothing on our standard error, and the
/// signals that this process holds back let through again. Returns at once; false when it could not be started.
bool startDetached(const QList<QByteArray>& command);

} // namespace lapsa
