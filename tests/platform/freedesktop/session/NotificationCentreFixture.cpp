// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "NotificationCentreFixture.h"

#include "FreedesktopNotificationCentre.h"
#include "PlayedService.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTest>

#include <utility>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

const QString name = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;

QDBusConnection connectionOfServer(const QString& address)
{
    static int count = 0;
    return QDBusConnection::connectToBus(address, u"server-%1"_s.arg(++count));
}

} // namespace

PlayedNotificationServer::PlayedNotificationServer(const QString& address, bool takesName)
    : m_connection(connectionOfServer(address))
{
    m_connection.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
    if (takesName && !m_connection.registerService(name)) {
        qFatal("the name is taken");
    }
}

PlayedNotificationServer::~PlayedNotificationServer()
{
    leaveBus(this, path, m_connection);
}

void PlayedNotificationServer::invoke(uint id, const QString& action)
{
    signal(u"ActionInvoked"_s, {id, action});
}

void PlayedNotificationServer::close(uint id, uint reason)
{
    signal(u"NotificationClosed"_s, {id, reason});
}

void PlayedNotificationServer::signal(const QString& member, const QVariantList& arguments)
{
    auto message = QDBusMessage::createSignal(path, name, member);
    message.setArguments(arguments);
    m_connection.send(message);
}

void PlayedNotificationServer::answerAllWith(const QVariantList& arguments)
{
    holdsBack = false;
    for (const QDBusMessage& call : std::exchange(m_kept, {})) {
        m_connection.send(call.createReply(arguments));
    }
}

void PlayedNotificationServer::answerAll()
{
    holdsBack = false;
    for (const QDBusMessage& call : std::exchange(m_kept, {})) {
        m_connection.send(call.createReply(nextId++));
    }
}

QStringList PlayedNotificationServer::GetCapabilities()
{
    ++capabilityQuestions;
    return capabilities;
}

uint PlayedNotificationServer::Notify(const QString& /*application*/, uint replaces, const QString& /*icon*/,
                                      const QString& summary, const QString& body, const QStringList& actions,
                                      const QVariantMap& hints, int /*timeout*/)
{
    shown.push_back({replaces, summary, body, actions, hints});
    if (holdsBack) {
        setDelayedReply(true);
        m_kept.push_back(message());
        return 0;
    }
    return replaces != 0 ? replaces : nextId++;
}

NotificationRequest NotificationCentreFixture::request(const QString& identifier, const QString& body)
{
    return {.identifier = identifier,
            .title = u"Lapsa <alert>"_s,
            .body = body,
            .actionLabel = u"Lock"_s,
            .userInfo = {{u"itemId"_s, identifier}}};
}

void NotificationCentreFixture::show(FreedesktopNotificationCentre& centre, const QString& identifier)
{
    const qsizetype before = m_server->shown.size();
    centre.add(request(identifier));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), before + 1, patience);
}

void NotificationCentreFixture::letTheBusAnswer()
{
    constexpr int rounds = 4;
    for (int round = 0; round < rounds; ++round) {
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void NotificationCentreFixture::settle(FreedesktopNotificationCentre& centre)
{
    const qsizetype before = m_server->shown.size();
    const uint id = m_server->nextId;
    centre.add(request(u"settle"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), before + 1, patience);
    // The reply has arrived as soon as a second request replaces the first.
    centre.add(request(u"settle"_s));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), before + 2, patience);
    QCOMPARE(m_server->shown.constLast().replaces, id);
}

} // namespace lapsa::test
