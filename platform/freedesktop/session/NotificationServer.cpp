// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "NotificationServer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;
const QString interface = u"org.freedesktop.Notifications"_s;
const QString busService = u"org.freedesktop.DBus"_s;
const QString busPath = u"/org/freedesktop/DBus"_s;
const QString busInterface = u"org.freedesktop.DBus"_s;

const QString defaultSound = u"message-new-instant"_s;
const QString defaultAction = u"default"_s;
const QString buttonAction = u"lock"_s;
constexpr uchar normalUrgency = 1;
/// The server decides.
constexpr int defaultTimeout = -1;
/// More than anyone reads. A call costs a few kilobytes until it is answered, or until the bus gives up after 25
/// seconds.
constexpr int mostUnderWay = 100;
constexpr qsizetype mostWaiting = 100;

/// How long a server may take to start and to report its capabilities, in milliseconds. Warnings wait for it.
constexpr int capabilitiesTimeout = 5000;
/// The bus's default of 25 seconds.
constexpr int usualTimeout = -1;

/// The default action is a click on the notification. It has no label, because some servers draw a button for every
/// labelled action.
QStringList actionsOf(const NotificationRequest& request)
{
    return {defaultAction, QString(), buttonAction, request.actionLabel};
}

QVariantMap hintsOf(const QString& desktopEntry)
{
    return {{u"desktop-entry"_s, desktopEntry},
            {u"sound-name"_s, defaultSound},
            {u"urgency"_s, QVariant::fromValue(normalUrgency)}};
}

QString escapedMarkup(QString text)
{
    return text.replace(u'&', "&amp;"_L1).replace(u'<', "&lt;"_L1).replace(u'>', "&gt;"_L1);
}

QDBusMessage callOf(const QString& method)
{
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

/// The number from the server's reply; 0 if there is none. Text and negative numbers do not count.
uint numberOf(const QDBusMessage& reply)
{
    const bool isNumber = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "u"_L1;
    return isNumber ? reply.arguments().value(0).toUInt() : 0;
}

/// Whether there is no server and none can be started, or no bus.
bool saysThatNobodyIsThere(const QDBusMessage& error)
{
    const QString name = error.errorName();
    return name == "org.freedesktop.DBus.Error.ServiceUnknown"_L1 ||
           name == "org.freedesktop.DBus.Error.Disconnected"_L1 ||
           name == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1 ||
           name.startsWith("org.freedesktop.DBus.Error.Spawn."_L1);
}

} // namespace

NotificationServer::NotificationServer(const ProgramIdentity& identity)
    : m_identity(identity)
    , m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    auto bus = QDBusConnection::sessionBus();
    bus.connect(service, path, interface, u"ActionInvoked"_s, this, SLOT(actionInvoked(uint, QString, QDBusMessage)));
    bus.connect(service, path, interface, u"NotificationClosed"_s, this,
                SLOT(notificationClosed(uint, uint, QDBusMessage)));
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { ownerChanged(newOwner); });
    askOwner();
}

void NotificationServer::add(const NotificationRequest& request)
{
    if (m_bodyMarkup || m_posted.value(request.identifier).underWay) {
        hand(request);
    } else {
        putOff(request);
        askCapabilities();
    }
}

void NotificationServer::askCapabilities()
{
    if (m_bodyMarkup || m_question) {
        return;
    }
    m_question = Question{.number = ++m_questions, .sentTo = m_owner, .waiting = m_waiting.size()};
    call(callOf(u"GetCapabilities"_s), capabilitiesTimeout,
         [this, number = m_questions](const QDBusMessage& reply) { capabilitiesAnswered(number, reply); });
}

void NotificationServer::askOwner()
{
    // Answered before anything sent later, and before any change of owner: the bus keeps the order.
    auto question = QDBusMessage::createMethodCall(busService, busPath, busInterface, u"GetNameOwner"_s);
    question.setArguments({service});
    call(question, usualTimeout, [this](const QDBusMessage& reply) {
        // An error means that there is no owner yet.
        if (m_ownerChanged || reply.type() != QDBusMessage::ReplyMessage) {
            return;
        }
        m_owner = reply.arguments().value(0).toString();
        if (m_question) {
            m_question->sentTo = m_owner;
        }
    });
}

void NotificationServer::call(const QDBusMessage& message, int timeout,
                              std::function<void(const QDBusMessage&)> answered)
{
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message, timeout), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, answered = std::move(answered)] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

void NotificationServer::capabilitiesAnswered(int number, const QDBusMessage& reply)
{
    if (!m_question || m_question->number != number) {
        return; // from a server that has gone
    }
    const Question question = *std::exchange(m_question, std::nullopt);
    if (reply.type() == QDBusMessage::ReplyMessage) {
        m_bodyMarkup = reply.arguments().value(0).toStringList().contains(u"body-markup"_s);
    } else if (saysThatNobodyIsThere(reply)) {
        dropInVain(question);
        return;
    }
    // A server that does not answer in time may still show notifications. It is asked again for the next request.
    postWaiting();
}

/// Drops only the requests of this question: the later ones may reach a server that has started meanwhile.
void NotificationServer::dropInVain(const Question& question)
{
    m_waiting.remove(0, std::min(question.waiting, m_waiting.size()));
    if (!m_waiting.isEmpty()) {
        askCapabilities();
    }
}

void NotificationServer::postWaiting()
{
    while (m_underWay < mostUnderWay && !m_waiting.isEmpty()) {
        hand(m_waiting.takeFirst());
    }
}

/// Posts a request, or keeps it while an earlier one or too many are under way.
void NotificationServer::hand(const NotificationRequest& request)
{
    if (const auto posted = m_posted.find(request.identifier); posted != m_posted.end() && posted->underWay) {
        posted->next = request;
    } else if (m_underWay < mostUnderWay) {
        post(request);
    } else {
        putOff(request);
    }
}

void NotificationServer::putOff(const NotificationRequest& request)
{
    const auto earlier = std::ranges::find(m_waiting, request.identifier, &NotificationRequest::identifier);
    if (earlier != m_waiting.end()) {
        *earlier = request;
        return;
    }
    if (m_waiting.size() == mostWaiting) {
        m_waiting.removeFirst();
        if (m_question && m_question->waiting > 0) {
            --m_question->waiting;
        }
    }
    m_waiting.push_back(request);
}

void NotificationServer::post(const NotificationRequest& request)
{
    Posted& posted = m_posted[request.identifier];
    posted.underWay = true;
    ++m_underWay;
    posted.sentTo = m_owner;
    posted.userInfo = request.userInfo;
    auto message = callOf(u"Notify"_s);
    // Every server treats the summary as plain text.
    const QString body = m_bodyMarkup.value_or(false) ? escapedMarkup(request.body) : request.body;
    message.setArguments({m_identity.name, posted.id, m_identity.id, request.title, body, actionsOf(request),
                          hintsOf(m_identity.id), defaultTimeout});
    call(message, usualTimeout,
         [this, identifier = request.identifier](const QDBusMessage& reply) { notifyAnswered(identifier, reply); });
}

void NotificationServer::notifyAnswered(const QString& identifier, const QDBusMessage& reply)
{
    Posted& posted = m_posted[identifier];
    posted.underWay = false;
    --m_underWay;
    // Newer versions of the toolkit do not say who replied: it is the server that ran when the call was sent, or that
    // was started for it. A number from a server that has gone is meaningless.
    const bool current = posted.sentTo.isEmpty() || posted.sentTo == m_owner;
    posted.id = current ? numberOf(reply) : 0;
    posted.server = m_owner;
    const std::optional<NotificationRequest> next = std::exchange(posted.next, std::nullopt);
    if (posted.id == 0) {
        m_posted.remove(identifier);
    }
    if (next) {
        add(*next);
    }
    if (!m_question) {
        postWaiting();
    }
}

void NotificationServer::ownerChanged(const QString& newOwner)
{
    // A question sent while no server ran is answered by the one that has now started.
    if (!m_question || !m_question->sentTo.isEmpty() || newOwner.isEmpty()) {
        m_question.reset();
    }
    m_bodyMarkup.reset();
    m_owner = newOwner;
    m_ownerChanged = true;
    m_posted.removeIf([&newOwner](const std::pair<const QString&, Posted&>& entry) {
        Posted& posted = entry.second;
        if (posted.server != newOwner) {
            posted.id = 0;
        }
        return posted.id == 0 && !posted.underWay;
    });
    if (!m_waiting.isEmpty()) {
        askCapabilities();
    }
}

QHash<QString, NotificationServer::Posted>::iterator NotificationServer::shown(uint id, const QString& server)
{
    auto posted = m_posted.begin();
    while (posted != m_posted.end() && (id == 0 || posted->id != id || posted->server != server)) {
        ++posted;
    }
    return posted;
}

void NotificationServer::actionInvoked(uint id, const QString& action, const QDBusMessage& signal)
{
    const auto posted = shown(id, signal.service());
    if (posted != m_posted.end() && (action == defaultAction || action == buttonAction)) {
        // A copy, because a slot may post again.
        const QHash<QString, QString> userInfo = posted->userInfo;
        emit responseReceived(userInfo);
    }
}

void NotificationServer::notificationClosed(uint id, uint /*reason*/, const QDBusMessage& signal)
{
    const auto posted = shown(id, signal.service());
    if (posted == m_posted.end()) {
        return;
    }
    posted->id = 0;
    if (!posted->underWay) {
        m_posted.erase(posted);
    }
}

} // namespace lapsa
