// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedPortal.h"

#include "PlayedService.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QTimer>

#include <chrono>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// (sa{sv})
struct KnownShortcut
{
    QString identifier;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const KnownShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.identifier << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KnownShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.identifier >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace {

const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;

QDBusConnection connectionOfPortal(const QString& address)
{
    static int count = 0;
    return QDBusConnection::connectToBus(address, u"portal-%1"_s.arg(++count));
}

QString placeOf(const QString& kind, const QDBusMessage& message, const QString& token)
{
    return u"%1/%2/%3/%4"_s.arg(portalPath, kind, message.service().remove(u':').replace(u'.', u'_'), token);
}

} // namespace

const QString PlayedPortal::requestInterface = u"org.freedesktop.portal.Request"_s;
const QString PlayedPortal::sessionInterface = u"org.freedesktop.portal.Session"_s;

PlayedPortal::PlayedPortal(const QString& address, Manner create, Manner bind)
    : m_connection(connectionOfPortal(address))
    , m_create(create)
    , m_bind(bind)
{
    qDBusRegisterMetaType<KnownShortcut>();
    qDBusRegisterMetaType<QList<KnownShortcut>>();
    m_connection.registerVirtualObject(portalPath, this, QDBusConnection::SubPath);
    if (!m_connection.registerService(u"org.freedesktop.portal.Desktop"_s)) {
        qFatal("the name is taken");
    }
}

PlayedPortal::~PlayedPortal()
{
    leaveBus(this, portalPath, m_connection);
}

QString PlayedPortal::introspect(const QString& /*path*/) const
{
    return {};
}

bool PlayedPortal::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    if (message.interface() == portalInterface && message.member() == u"CreateSession"_s) {
        createSession(message);
    } else if (message.interface() == portalInterface && message.member() == u"BindShortcuts"_s) {
        bindShortcuts(message);
    } else if (message.interface() == portalInterface && message.member() == u"ListShortcuts"_s) {
        listShortcuts(message);
    } else if (message.member() == u"Close"_s) {
        closed.push_back({message.path(), message.interface()});
    } else {
        return false;
    }
    return true;
}

void PlayedPortal::activate(const QString& session, const QString& identifier)
{
    auto signal = QDBusMessage::createSignal(portalPath, portalInterface, u"Activated"_s);
    signal << QVariant::fromValue(QDBusObjectPath(session)) << identifier << qulonglong(1) << QVariantMap();
    m_connection.send(signal);
}

void PlayedPortal::closeSession(const QString& session)
{
    auto signal = QDBusMessage::createSignal(session, sessionInterface, u"Closed"_s);
    signal << QVariantMap();
    m_connection.send(signal);
}

void PlayedPortal::createSession(const QDBusMessage& message)
{
    ++sessionsAskedFor;
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(0));
    const QString session = placeOf(u"session"_s, message, options[u"session_handle_token"_s].toString());
    lastSession = session;
    if (takesKeysWithTheSession) {
        for (const auto& shortcut : qdbus_cast<QList<KnownShortcut>>(options[u"shortcuts"_s])) {
            known.push_back(shortcut.identifier);
        }
    }
    respond(message, m_create, options, {{u"session_handle"_s, session}});
}

void PlayedPortal::bindShortcuts(const QDBusMessage& message)
{
    const auto session = message.arguments().value(0).value<QDBusObjectPath>().path();
    const auto shortcuts = message.arguments().value(1).value<QDBusArgument>();
    shortcuts.beginArray();
    while (!shortcuts.atEnd()) {
        Bound shortcut{.session = session, .identifier = {}, .properties = {}};
        shortcuts.beginStructure();
        shortcuts >> shortcut.identifier >> shortcut.properties;
        shortcuts.endStructure();
        bound.push_back(shortcut);
    }
    shortcuts.endArray();
    respond(message, m_bind, qdbus_cast<QVariantMap>(message.arguments().value(3)), {});
}

void PlayedPortal::listShortcuts(const QDBusMessage& message)
{
    ++listsAskedFor;
    QList<KnownShortcut> shortcuts;
    for (const QString& identifier : std::as_const(known)) {
        shortcuts.push_back({.identifier = identifier, .properties = {{u"trigger_description"_s, u"Meta+Shift+Y"_s}}});
    }
    respond(message, listFails ? Manner::Fails : Manner::Grants, qdbus_cast<QVariantMap>(message.arguments().value(1)),
            {{u"shortcuts"_s, QVariant::fromValue(shortcuts)}});
}

void PlayedPortal::respond(const QDBusMessage& message, Manner manner, const QVariantMap& options,
                           const QVariantMap& results)
{
    if (manner == Manner::Fails) {
        m_connection.send(message.createErrorReply(QDBusError::UnknownMethod, u"No such method"_s));
        return;
    }
    const QString token = options[u"handle_token"_s].toString();
    const QString path =
        placeOf(u"request"_s, message, manner == Manner::GrantsElsewhere ? u"elsewhere"_s + token : token);
    const QDBusMessage reply = message.createReply(QVariant::fromValue(QDBusObjectPath(path)));
    auto response = QDBusMessage::createSignal(path, requestInterface, u"Response"_s);
    response << uint(manner == Manner::Refuses ? 1 : 0) << results;
    if (manner == Manner::GrantsAtOnce) {
        m_connection.send(response);
    }
    m_connection.send(reply);
    if (manner == Manner::GrantsElsewhere) {
        // Nobody can listen there before the reply has come, and nobody says when it has.
        repeat(response);
    } else if (manner == Manner::Grants || manner == Manner::Refuses) {
        m_connection.send(response);
    }
}

void PlayedPortal::repeat(const QDBusMessage& signal)
{
    auto* timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, [this, signal] { m_connection.send(signal); });
    timer->start(std::chrono::milliseconds(20));
}

} // namespace lapsa::test
