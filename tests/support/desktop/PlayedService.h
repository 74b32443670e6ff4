// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QObject>
#include <QString>

namespace lapsa::test {

/// For the destructor of an object that is played on a connection of its own: no call finds it any more, those that are
/// on their way to it are answered, and the connection goes. A call that came between the last two would find neither.
inline void leaveBus(QObject* played, const QString& path, QDBusConnection connection)
{
    connection.unregisterObject(path, QDBusConnection::UnregisterTree);
    QCoreApplication::sendPostedEvents(played);
    QDBusConnection::disconnectFromBus(connection.name());
}

} // namespace lapsa::test
