// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LapsaAppFixture.h"
#include "LapsaProcess.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QTest>
#include <QVariantMap>

#include <optional>

namespace lapsa::test {

/// A running Lapsa, and a client of its interface on a connection of its own.
class ServedLapsa : public LapsaAppFixture
{
    Q_OBJECT

protected:
    using Dictionaries = QList<QVariantMap>;

    void beginServed()
    {
        begin();
        m_client.emplace(QDBusConnection::connectToBus(m_bus->address(), clientName()));
        QVERIFY(m_client->isConnected());
    }

    void endServed()
    {
        m_lapsa.reset();
        m_client.reset();
        QDBusConnection::disconnectFromBus(clientName());
        end();
    }

    void startLapsa()
    {
        m_lapsa.emplace();
        waitForName();
    }

    [[nodiscard]] static QString clientName() { return QStringLiteral("client"); }

    [[nodiscard]] static QString objectPath() { return QStringLiteral("/org/lapsa/Lapsa"); }

    [[nodiscard]] static QString interfaceName() { return QStringLiteral("org.lapsa.Lapsa1"); }

    [[nodiscard]] QDBusMessage call(const QString& method, const QVariantList& arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(busName(), objectPath(), interfaceName(), method);
        message.setArguments(arguments);
        return m_client->call(message, QDBus::Block, patience);
    }

    [[nodiscard]] Dictionaries answer(const QString& method, const QVariantList& arguments = {}) const
    {
        const QDBusMessage reply = call(method, arguments);
        if (reply.type() != QDBusMessage::ReplyMessage) {
            qWarning("%s", qUtf8Printable(reply.errorName() + u' ' + reply.errorMessage()));
            return {};
        }
        Dictionaries dictionaries;
        reply.arguments().value(0).value<QDBusArgument>() >> dictionaries;
        return dictionaries;
    }

    /// Writes a list with one item whose time is up: the next start moves it to Recovery.
    void listExpired(const QString& path) const
    {
        const QString name = path.section(u'/', -1);
        const QJsonObject item{{QStringLiteral("addedAt"), QStringLiteral("2026-03-01T12:00:00Z")},
                               {QStringLiteral("displayName"), name},
                               {QStringLiteral("expiresAt"), QStringLiteral("2026-03-01T14:00:00Z")},
                               {QStringLiteral("fiveMinuteWarningSent"), false},
                               {QStringLiteral("id"), QStringLiteral("1")},
                               {QStringLiteral("locked"), false},
                               {QStringLiteral("path"), path}};
        m_home->writeDataFile(QStringLiteral("state.json"), QJsonDocument(QJsonArray{item}).toJson());
    }

    std::optional<LapsaProcess> m_lapsa;
    std::optional<QDBusConnection> m_client;
};

} // namespace lapsa::test
