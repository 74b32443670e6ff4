// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "NotificationCentre.h"
#include "SessionBus.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <memory>

namespace lapsa {

class FreedesktopNotificationCentre;

} // namespace lapsa

namespace lapsa::test {

/// A notification server that is played, on a bus connection of its own.
class PlayedNotificationServer final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notification
    {
        uint replaces = 0;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };

    explicit PlayedNotificationServer(const QString& address, bool takesName = true);
    ~PlayedNotificationServer() override;

    void invoke(uint id, const QString& action);
    void close(uint id, uint reason);
    /// Sends any signal.
    void signal(const QString& member, const QVariantList& arguments);

    /// Answers the calls that were kept with these arguments, which need not make sense.
    void answerAllWith(const QVariantList& arguments);
    /// Answers the calls that were kept.
    void answerAll();

    QList<Notification> shown;
    QStringList capabilities{QStringLiteral("actions"), QStringLiteral("body"), QStringLiteral("body-markup")};
    int capabilityQuestions = 0;
    /// Keeps calls in place of answering them.
    bool holdsBack = false;
    uint nextId = 1;

public slots:
    // NOLINTBEGIN(readability-identifier-naming): their names are given by the interface
    Q_SCRIPTABLE QStringList GetCapabilities();
    Q_SCRIPTABLE uint Notify(const QString& application, uint replaces, const QString& icon, const QString& summary,
                             const QString& body, const QStringList& actions, const QVariantMap& hints, int timeout);
    // NOLINTEND(readability-identifier-naming)

private:
    QDBusConnection m_connection;
    QList<QDBusMessage> m_kept;
};

/// What the tests of the notification centre share: a session bus, and the server on it.
class NotificationCentreFixture : public QObject
{
    Q_OBJECT

protected:
    static constexpr int patience = 20'000;

    [[nodiscard]] static NotificationRequest request(const QString& identifier,
                                                     const QString& body = QStringLiteral("body"));

    void show(FreedesktopNotificationCentre& centre, const QString& identifier);
    /// Returns when all questions that were on their way, and those that followed from their answers, are answered by
    /// the bus itself: its answers come in the order of the questions.
    static void letTheBusAnswer();
    /// Returns when everything that the server has sent so far has arrived: its messages come in order.
    void settle(FreedesktopNotificationCentre& centre);

    SessionBus m_bus;
    std::unique_ptr<PlayedNotificationServer> m_server;
};

} // namespace lapsa::test
