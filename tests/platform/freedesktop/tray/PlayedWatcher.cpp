// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedWatcher.h"

#include "PlayedService.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

} // namespace

PlayedWatcher::PlayedWatcher(const SessionBus& bus, bool host, const QString& connection)
    : m_hasHost(host)
    , m_bus(QDBusConnection::connectToBus(bus.address(), connection))
{
    m_bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                         QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals |
                             QDBusConnection::ExportScriptableProperties);
    // Where another one has it, this is the next.
    m_bus.interface()->registerService(watcherName, QDBusConnectionInterface::QueueService);
}

PlayedWatcher::~PlayedWatcher()
{
    // Calls that are still on their way to it need the connection.
    QCoreApplication::removePostedEvents(this);
    m_bus.unregisterService(watcherName);
    m_bus.unregisterObject(u"/StatusNotifierWatcher"_s);
    QDBusConnection::disconnectFromBus(m_bus.name());
}

void PlayedWatcher::bringHost()
{
    m_hasHost = true;
    emit StatusNotifierHostRegistered();
}

QDBusMessage PlayedWatcher::ask(const QString& path, const QString& interface, const QString& method,
                                const QVariantList& arguments) const
{
    auto call = QDBusMessage::createMethodCall(items.constFirst(), path, interface, method);
    call.setArguments(arguments);
    return m_bus.call(call, QDBus::BlockWithGui, patience);
}

void PlayedWatcher::activateTwice(int x, int y) const
{
    auto call = QDBusMessage::createMethodCall(items.constFirst(), u"/StatusNotifierItem"_s,
                                               u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
    call.setArguments({x, y});
    m_bus.send(call);
    m_bus.send(call);
}

SilentWatcher::SilentWatcher(const SessionBus& bus)
    : m_bus(QDBusConnection::connectToBus(bus.address(), u"silent tray host"_s))
{
    m_bus.registerVirtualObject(u"/StatusNotifierWatcher"_s, this);
    m_bus.registerService(watcherName);
}

SilentWatcher::~SilentWatcher()
{
    leaveBus(this, u"/StatusNotifierWatcher"_s, m_bus);
}

QString SilentWatcher::introspect(const QString& /*path*/) const
{
    return {};
}

bool SilentWatcher::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    message.setDelayedReply(true);
    wasAsked = wasAsked || message.member() == u"Get"_s;
    return true;
}

} // namespace lapsa::test
