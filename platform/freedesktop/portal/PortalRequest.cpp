// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PortalRequest.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString interface = u"org.freedesktop.portal.Request"_s;

/// "0: Success, the request is carried out" and "1: The user cancelled the interaction" of the portal's documentation.
constexpr uint success = 0;
constexpr uint cancelled = 1;

QString newToken()
{
    static int count = 0;
    return QCoreApplication::applicationName().toLower() + QString::number(++count);
}

/// The path of a request made with `token`. Listening there before the call makes sure that its answer is not missed.
QString predictedPath(const QString& token)
{
    const QString sender = QDBusConnection::sessionBus().baseService().remove(u':').replace(u'.', u'_');
    return u"/org/freedesktop/portal/desktop/request/%1/%2"_s.arg(sender, token);
}

} // namespace

PortalRequest::PortalRequest(QDBusMessage call, QVariantMap options, std::function<void(const Answer&)> answered,
                             std::chrono::milliseconds patience)
    : m_answered(std::move(answered))
{
    const QString token = newToken();
    listenTo(predictedPath(token));
    options[u"handle_token"_s] = token;
    call << options;
    auto* watcher = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(call, static_cast<int>(patience.count())), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        replied(watcher->reply());
    });
}

PortalRequest::~PortalRequest()
{
    stopListening();
    if (m_pending) {
        QDBusConnection::sessionBus().send(QDBusMessage::createMethodCall(service, m_path, interface, u"Close"_s));
    }
}

void PortalRequest::listenTo(const QString& path)
{
    m_path = path;
    QDBusConnection::sessionBus().connect(service, path, interface, u"Response"_s, this,
                                          SLOT(responded(uint, QVariantMap)));
}

void PortalRequest::stopListening()
{
    QDBusConnection::sessionBus().disconnect(service, m_path, interface, u"Response"_s, this,
                                             SLOT(responded(uint, QVariantMap)));
}

void PortalRequest::replied(const QDBusMessage& reply)
{
    if (reply.type() != QDBusMessage::ReplyMessage) {
        finish(std::nullopt);
        return;
    }
    // Portals before 0.9 choose a path of their own.
    const QString path = reply.arguments().value(0).value<QDBusObjectPath>().path();
    if (m_pending && !path.isEmpty() && path != m_path) {
        stopListening();
        listenTo(path);
    }
}

void PortalRequest::responded(uint response, const QVariantMap& results)
{
    m_refusedByUser = m_pending && response == cancelled;
    finish(response == success ? Answer(results) : std::nullopt);
}

void PortalRequest::finish(const Answer& answer)
{
    if (!std::exchange(m_pending, false)) {
        return;
    }
    // Queued, so that the callback may destroy this object.
    QMetaObject::invokeMethod(
        this,
        [this, answer] {
            const auto answered = std::exchange(m_answered, {});
            answered(answer);
        },
        Qt::QueuedConnection);
}

} // namespace lapsa
