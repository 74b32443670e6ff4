// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DolphinCopy.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString windowInterface = u"org.kde.KMainWindow"_s;
const QString windowsPath = u"/dolphin"_s;

/// Calls and waits for the answer without running the event loop. An error message if no answer comes in time.
QDBusMessage answerOf(const QDBusMessage& call, const QDeadlineTimer& deadline)
{
    const int patience = std::max(1, static_cast<int>(deadline.remainingTime()));
    return QDBusConnection::sessionBus().call(call, QDBus::Block, patience);
}

QVariant firstValueOf(const QDBusMessage& answer)
{
    const bool valid = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
    return valid ? answer.arguments().first() : QVariant();
}

QStringList nodesIn(const QString& introspection)
{
    QStringList names;
    QXmlStreamReader reader(introspection);
    while (!reader.atEnd()) {
        const bool node = reader.readNext() == QXmlStreamReader::StartElement && reader.name() == "node"_L1;
        if (const auto name = reader.attributes().value("name"_L1); node && !name.isEmpty()) {
            names.push_back(name.toString());
        }
    }
    return names;
}

} // namespace

DolphinOutcome copyInDolphin(std::uint32_t processId, std::uint32_t window, const QDeadlineTimer& deadline)
{
    const QString service = u"org.kde.dolphin-%1"_s.arg(processId);
    const QDBusMessage look =
        QDBusMessage::createMethodCall(service, windowsPath, u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s);
    for (const QString& node : nodesIn(firstValueOf(answerOf(look, deadline)).toString())) {
        const QString path = windowsPath + u'/' + node;
        const auto ask = QDBusMessage::createMethodCall(service, path, windowInterface, u"winId"_s);
        if (deadline.hasExpired() || firstValueOf(answerOf(ask, deadline)).toLongLong() != window) {
            continue;
        }
        auto copy = QDBusMessage::createMethodCall(service, path, windowInterface, u"activateAction"_s);
        copy << u"edit_copy"_s;
        return firstValueOf(answerOf(copy, deadline)).toBool() ? DolphinOutcome::Copied : DolphinOutcome::Unanswered;
    }
    return DolphinOutcome::NotAsked;
}

} // namespace lapsa
