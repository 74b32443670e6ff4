// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PortalIdentity.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariantMap>

namespace lapsa {

using namespace Qt::StringLiterals;

void introduceToPortal(const QString& programId)
{
    auto call =
        QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                                       u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    call << programId << QVariantMap();
    QDBusConnection::sessionBus().send(call);
}

} // namespace lapsa
