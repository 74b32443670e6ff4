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

/// The session's notification server as it comes and goes: what it can do, what was posted to it, and under which
/// number it knows that. Numbers are the server's, for as long as it runs. Where none can be had, and where one does
/// not answer, little is kept, however much is asked for: what is too much is dropped, the oldest first.
class NotificationServer final : public QObject
{
    Q_OBJECT

public:
    explicit NotificationServer(const ProgramIdentity& identity);

    /// Shows a request, or lets it take the place of the one with its identifier.
    void add(const NotificationRequest& request);
    /// Asks what the server can do, unless that is known or being asked. It wakes one that is started on demand.
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
        /// The server at the time when it was sent; empty where none ran, and the bus had to start one.
        QString sentTo;
        /// What to post in its place as soon as its number is known.
        std::optional<NotificationRequest> next;
        QHash<QString, QString> userInfo;
    };

    /// A question about what the server can do, while it is under way.
    struct Question
    {
        int number = 0;
        /// As of Posted.
        QString sentTo;
        /// How many of the waiting requests, from the front, it was asked for. The later ones may find another server.
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
    /// Whether the server takes the body for markup; nothing while that is not known.
    std::optional<bool> m_bodyMarkup;
    std::optional<Question> m_question;
    int m_questions = 0;
    /// Requests that cannot be posted yet, the oldest first; one for each identifier.
    QList<NotificationRequest> m_waiting;
    /// By the identifiers of the requests.
    QHash<QString, Posted> m_posted;
    int m_underWay = 0;
};

} // namespace lapsa
