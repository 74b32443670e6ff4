// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopNotificationCentre.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QStringList>
#include <QVariantMap>

#include <optional>
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

const QString applicationName = u"Lapsa"_s;
const QString desktopEntry = u"org.lapsa.Lapsa"_s;
const QString defaultSound = u"message-new-instant"_s;
const QString defaultAction = u"default"_s;
const QString buttonAction = u"lock"_s;
constexpr uchar normalUrgency = 1;
/// The server's own choice.
constexpr int defaultTimeout = -1;

/// The default action is the click on the notification and has no label, which would make a second button of it on
/// servers that draw every labelled action.
QStringList actionsOf(const NotificationRequest& request)
{
    return {defaultAction, QString(), buttonAction, request.actionLabel};
}

QVariantMap hints()
{
    return {{u"desktop-entry"_s, desktopEntry},
            {u"sound-name"_s, defaultSound},
            {u"urgency"_s, QVariant::fromValue(normalUrgency)}};
}

/// The body is markup by the notification rules. The summary is plain text and stays as it is.
QString escapedMarkup(QString text)
{
    return text.replace(u'&', "&amp;"_L1).replace(u'<', "&lt;"_L1).replace(u'>', "&gt;"_L1);
}

QDBusMessage callOf(const QString& method)
{
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

/// The number that the server gave; 0 where it gave none. A text or a negative number is not taken for one.
uint numberOf(const QDBusMessage& reply)
{
    const bool isNumber = reply.type() == QDBusMessage::ReplyMessage && reply.signature() == "u"_L1;
    return isNumber ? reply.arguments().value(0).toUInt() : 0;
}

} // namespace

/// What was posted, and under which number the server knows it. Numbers are the server's, for as long as it runs.
class FreedesktopNotificationCentre::Server final : public QObject
{
    Q_OBJECT

public:
    Server()
        : m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
    {
        auto bus = QDBusConnection::sessionBus();
        bus.connect(service, path, interface, u"ActionInvoked"_s, this,
                    SLOT(actionInvoked(uint, QString, QDBusMessage)));
        bus.connect(service, path, interface, u"NotificationClosed"_s, this,
                    SLOT(notificationClosed(uint, uint, QDBusMessage)));
        connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString&, const QString& newOwner) { ownerChanged(newOwner); });
        // Answered before anything that is sent later, and before any change: the bus keeps the order.
        auto question = QDBusMessage::createMethodCall(busService, busPath, busInterface, u"GetNameOwner"_s);
        question.setArguments({service});
        auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            watcher->deleteLater();
            const QDBusMessage reply = watcher->reply();
            // An error says that there is none yet.
            if (!m_ownerChanged && reply.type() == QDBusMessage::ReplyMessage) {
                m_owner = reply.arguments().value(0).toString();
            }
        });
    }

    void add(const NotificationRequest& request)
    {
        Posted& posted = m_posted[request.identifier];
        if (posted.underWay) {
            posted.next = request;
        } else {
            post(request);
        }
    }

signals:
    void responseReceived(const QHash<QString, QString>& userInfo);

private slots:

    void actionInvoked(uint id, const QString& action, const QDBusMessage& signal)
    {
        const auto posted = shown(id, signal.service());
        if (posted != m_posted.end() && (action == defaultAction || action == buttonAction)) {
            // A copy, because the one who hears it may post again.
            const QHash<QString, QString> userInfo = posted->userInfo;
            emit responseReceived(userInfo);
        }
    }

    void notificationClosed(uint id, uint /*reason*/, const QDBusMessage& signal)
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

private:
    struct Posted
    {
        /// 0 while nothing is shown.
        uint id = 0;
        /// The unique bus name of the server that gave the number.
        QString server;
        bool underWay = false;
        /// The server at the time when it was sent; empty where none ran, and the bus had to start one.
        QString sentTo;
        /// What to post in its place as soon as its number is known.
        std::optional<NotificationRequest> next;
        QHash<QString, QString> userInfo;
    };

    [[nodiscard]] QHash<QString, Posted>::iterator shown(uint id, const QString& server)
    {
        auto posted = m_posted.begin();
        while (posted != m_posted.end() && (id == 0 || posted->id != id || posted->server != server)) {
            ++posted;
        }
        return posted;
    }

    void post(const NotificationRequest& request)
    {
        Posted& posted = m_posted[request.identifier];
        posted.underWay = true;
        posted.sentTo = m_owner;
        posted.userInfo = request.userInfo;
        auto message = callOf(u"Notify"_s);
        message.setArguments({applicationName, posted.id, desktopEntry, request.title, escapedMarkup(request.body),
                              actionsOf(request), hints(), defaultTimeout});
        auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, identifier = request.identifier] {
            watcher->deleteLater();
            answer(identifier, watcher->reply());
        });
    }

    void answer(const QString& identifier, const QDBusMessage& reply)
    {
        Posted& posted = m_posted[identifier];
        posted.underWay = false;
        // Newer versions of the toolkit do not say who replies: it is the one who was there when it was sent, or who
        // was started for it. A number of one who has gone means nothing.
        const bool current = posted.sentTo.isEmpty() || posted.sentTo == m_owner;
        posted.id = current ? numberOf(reply) : 0;
        posted.server = m_owner;
        if (const std::optional<NotificationRequest> next = std::exchange(posted.next, std::nullopt)) {
            post(*next);
        } else if (posted.id == 0) {
            m_posted.remove(identifier);
        }
    }

    void ownerChanged(const QString& newOwner)
    {
        m_owner = newOwner;
        m_ownerChanged = true;
        m_posted.removeIf([&newOwner](const std::pair<const QString&, Posted&>& entry) {
            Posted& posted = entry.second;
            if (posted.server != newOwner) {
                posted.id = 0;
            }
            return posted.id == 0 && !posted.underWay;
        });
    }

    QDBusServiceWatcher m_watcher;
    /// The server's unique bus name; empty while there is none.
    QString m_owner;
    bool m_ownerChanged = false;
    /// By the identifiers of the requests.
    QHash<QString, Posted> m_posted;
};

FreedesktopNotificationCentre::FreedesktopNotificationCentre()
    : m_server(std::make_unique<Server>())
{
    connect(m_server.get(), &Server::responseReceived, this, &FreedesktopNotificationCentre::responseReceived);
}

FreedesktopNotificationCentre::~FreedesktopNotificationCentre() = default;

void FreedesktopNotificationCentre::requestAuthorization()
{
    // There is no permission to ask for here; the question wakes a server that is started on demand, so that the first
    // warning does not have to. The answer changes nothing.
    QDBusConnection::sessionBus().asyncCall(callOf(u"GetCapabilities"_s));
}

void FreedesktopNotificationCentre::add(const NotificationRequest& request)
{
    m_server->add(request);
}

} // namespace lapsa

#include "FreedesktopNotificationCentre.moc"
