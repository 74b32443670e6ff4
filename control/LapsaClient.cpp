// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaClient.h"

#include "FileUri.h"
#include "Localized.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusReply>

#include <algorithm>
#include <limits>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString busName = u"org.lapsa.Lapsa"_s;
/// Copies to other disks take as long as they take.
constexpr int untilItAnswers = std::numeric_limits<int>::max();
/// As many as one call may have.
constexpr qsizetype mostEntries = 10'000;

} // namespace

LapsaClient::LapsaClient()
{
    qDBusRegisterMetaType<Dictionaries>();
}

bool LapsaClient::reach(Start start)
{
    const auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_error = Localized::text(u"There is no session bus"_s, u"Non c'è un bus di sessione"_s);
        return false;
    }
    if (bus.interface()->isServiceRegistered(busName)) {
        return true;
    }
    m_error = Localized::text(u"Lapsa is not running"_s, u"Lapsa non è in esecuzione"_s);
    if (start == Start::Never) {
        return false;
    }
    const QDBusReply<void> started = bus.interface()->startService(busName);
    if (!started.isValid()) {
        m_error += Localized::text(u" and could not be started: "_s, u" e non si è potuto avviare: "_s) +
                   started.error().message();
    }
    return started.isValid();
}

std::optional<LapsaClient::Dictionaries> LapsaClient::items()
{
    return dictionaries(u"Items"_s);
}

std::optional<LapsaClient::Dictionaries> LapsaClient::recovered()
{
    return dictionaries(u"Recovered"_s);
}

std::optional<LapsaClient::Dictionaries> LapsaClient::add(const QStringList& paths, int minutes)
{
    QStringList uris;
    std::ranges::transform(paths, std::back_inserter(uris),
                           [](const QString& path) { return QString::fromLatin1(fileUri(path)); });
    return inParts(u"Add"_s, uris, {minutes});
}

std::optional<LapsaClient::Dictionaries> LapsaClient::putBack(const QStringList& ids)
{
    return inParts(u"PutBack"_s, ids, {});
}

bool LapsaClient::lock(const QString& id, bool locked)
{
    return call(u"Lock"_s, {id, locked}).type() == QDBusMessage::ReplyMessage;
}

bool LapsaClient::remove(const QString& id)
{
    return call(u"Remove"_s, {id}).type() == QDBusMessage::ReplyMessage;
}

QDBusMessage LapsaClient::call(const QString& method, const QVariantList& arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(busName, u"/org/lapsa/Lapsa"_s, u"org.lapsa.Lapsa1"_s, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, untilItAnswers);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        m_error = Localized::text(u"Lapsa did not do it: "_s, u"Lapsa non lo ha fatto: "_s) + reply.errorMessage();
    }
    return reply;
}

std::optional<LapsaClient::Dictionaries> LapsaClient::dictionaries(const QString& method, const QVariantList& arguments)
{
    const QDBusMessage reply = call(method, arguments);
    if (reply.type() != QDBusMessage::ReplyMessage) {
        return std::nullopt;
    }
    return qdbus_cast<Dictionaries>(reply.arguments().value(0));
}

std::optional<LapsaClient::Dictionaries> LapsaClient::inParts(const QString& method, const QStringList& texts,
                                                              const QVariantList& further)
{
    Dictionaries all;
    for (qsizetype first = 0; first < texts.size(); first += mostEntries) {
        const auto part = dictionaries(method, QVariantList{texts.mid(first, mostEntries)} + further);
        if (!part) {
            return std::nullopt;
        }
        all += *part;
    }
    return all;
}

} // namespace lapsa
