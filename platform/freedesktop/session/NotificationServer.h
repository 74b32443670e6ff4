// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "NotificationCentre.h"
#include "ProgramIdentity.h"

#include <QDBusServiceWatcher>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

class QDBusMessage;

namespace lapsa {

/// The session's notification server, which may start and stop: its capabilities, the requests posted to it, and their
/// numbers. The server assigns the numbers; they are valid as long as it runs. While there is no server, or it does not
/// answer, only a limited number of requests is kept: the oldest are dropped first.
class NotificationServer final : public QObject
{
    Q_OBJECT

public:
    explicit NotificationServer(const ProgramIdentity& identity);

    /// Shows a request; replaces the notification with the same identifier, if any.
    void add(const NotificationRequest& request);
    /// Asks for the server's capabilities, unless they are known or already being asked for. Starts an on-demand
    /// server.
    void askCapabilities();

signals:
    void responseReceived(const QHash<QString, QString>& userInfo);

private slots:
    void actionInvoked(uint id, const QString& action, const QDBusMessage& signal);
    void notificationClosed(uint id, uint reason, const QDBusMessage& signal);

private:
    struct Posted
    {
        /// 0 while nothing is shown.
        uint id = 0;
        /// The unique bus name of the server that gave the number.
        QString server;
        bool underWay = false;
        /// The server's unique name when the call was sent; empty if none ran and the bus had to start one.
        QString sentTo;
        /// The request that replaces it as soon as its number is known.
        std::optional<NotificationRequest> next;
        QHash<QString, QString> userInfo;
    };

    /// An unanswered question for the server's capabilities.
    struct Question
    {
        int number = 0;
        /// See Posted.
        QString sentTo;
        /// The number of waiting requests, from the front, that depend on it. Later ones may reach another server.
        qsizetype waiting = 0;
    };

    void askOwner();
    void call(const QDBusMessage& message, int timeout, std::function<void(const QDBusMessage& reply)> answered);
    void capabilitiesAnswered(int number, const QDBusMessage& reply);
    void dropInVain(const Question& question);
    void postWaiting();
    void hand(const NotificationRequest& request);
    void putOff(const NotificationRequest& request);
    void post(const NotificationRequest& request);
    void notifyAnswered(const QString& identifier, const QDBusMessage& reply);
    void ownerChanged(const QString& newOwner);
    [[nodiscard]] QHash<QString, Posted>::iterator shown(uint id, const QString& server);

    ProgramIdentity m_identity;
    QDBusServiceWatcher m_watcher;
    /// The server's unique bus name; empty while there is none.
    QString m_owner;
    bool m_ownerChanged = false;
    /// Whether the server interprets markup in the body; nothing while unknown.
    std::optional<bool> m_bodyMarkup;
    std::optional<Question> m_question;
    int m_questions = 0;
    /// Requests that cannot be posted yet, oldest first; one per identifier.
    QList<NotificationRequest> m_waiting;
    /// Keyed by request identifier.
    QHash<QString, Posted> m_posted;
    int m_underWay = 0;
};

} // namespace lapsa
