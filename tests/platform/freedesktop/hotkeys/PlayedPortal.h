// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace lapsa::test {

/// How the played portal answers a method.
enum class Manner
{
    Grants,
    /// Answers before the reply that says where to listen.
    GrantsAtOnce,
    /// Puts the request somewhere else than it has to.
    GrantsElsewhere,
    Refuses,
    Fails,
    NeverResponds,
};

/// What was asked to be bound.
struct Bound
{
    QString session;
    QString identifier;
    QVariantMap properties;
};

/// A portal that is played, on a bus connection of its own, with all the objects that it makes.
class PlayedPortal final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    static const QString requestInterface;
    static const QString sessionInterface;

    explicit PlayedPortal(const QString& address, Manner create = Manner::Grants, Manner bind = Manner::Grants);
    PlayedPortal(const PlayedPortal&) = delete;
    PlayedPortal& operator=(const PlayedPortal&) = delete;
    ~PlayedPortal() override;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

    void activate(const QString& session, const QString& identifier);
    void closeSession(const QString& session);

    /// The keys that it knows from an earlier start, of every session.
    QStringList known;
    /// Whether it is too old to say so.
    bool listFails = false;
    /// As KDE's portal of Plasma 5.27: it learns the keys from the options of the session, and binds none later.
    bool takesKeysWithTheSession = false;
    int listsAskedFor = 0;
    int sessionsAskedFor = 0;
    QString lastSession;
    QList<Bound> bound;
    /// Paths and interfaces.
    QList<std::pair<QString, QString>> closed;

private:
    void createSession(const QDBusMessage& message);
    void bindShortcuts(const QDBusMessage& message);
    void listShortcuts(const QDBusMessage& message);
    void respond(const QDBusMessage& message, Manner manner, const QVariantMap& options, const QVariantMap& results);
    void repeat(const QDBusMessage& signal);

    QDBusConnection m_connection;
    Manner m_create;
    Manner m_bind;
};

} // namespace lapsa::test
