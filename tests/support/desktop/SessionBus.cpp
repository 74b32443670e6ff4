// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SessionBus.h"

#include <QFile>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

constexpr const char* configuration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  %2
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

void putBack(const QByteArray& address)
{
    if (address.isEmpty()) {
        qunsetenv(addressVariable);
    } else {
        qputenv(addressVariable, address);
    }
}

} // namespace

SessionBus::SessionBus(const QString& services)
    : m_previous(qgetenv(addressVariable))
{
    QFile file(m_folder.filePath(u"session.conf"_s));
    const QString folder =
        services.isEmpty() ? QString() : u"<servicedir>%1</servicedir>"_s.arg(services.toHtmlEscaped());
    if (!file.open(QIODevice::WriteOnly) ||
        file.write(QString::fromLatin1(configuration).arg(m_folder.path(), folder).toUtf8()) < 0) {
        qFatal("cannot write the configuration of the bus");
    }
    file.close();
    m_daemon.emplace(u"dbus-daemon"_s, QStringList{u"--config-file="_s + file.fileName(), u"--nofork"_s,
                                                   u"--nopidfile"_s, u"--print-address=1"_s});
    m_address = m_daemon->readLine();
    qputenv(addressVariable, m_address.toUtf8());
}

SessionBus::~SessionBus()
{
    putBack(m_previous);
}

bool SessionBus::hasOwner(const QString& name) const
{
    return outputOf(u"dbus-send"_s,
                    {u"--bus="_s + m_address, u"--print-reply=literal"_s, u"--dest=org.freedesktop.DBus"_s, u"/"_s,
                     u"org.freedesktop.DBus.NameHasOwner"_s, u"string:"_s + name})
        .contains("true");
}

NoSessionBus::NoSessionBus()
    : m_previous(qgetenv(addressVariable))
{
    qputenv(addressVariable, "unix:path=/nonexistent/bus");
}

NoSessionBus::~NoSessionBus()
{
    putBack(m_previous);
}

} // namespace lapsa::test
