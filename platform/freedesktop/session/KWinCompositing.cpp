// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KWinCompositing.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.kde.KWin"_s;
const QString path = u"/Compositor"_s;
const QString interface = u"org.kde.kwin.Compositing"_s;

} // namespace

KWinCompositing::KWinCompositing()
    : m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    QDBusConnection::sessionBus().connect(service, path, interface, u"compositingToggled"_s, this,
                                          SLOT(compositingToggled(bool)));
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) {
                if (newOwner.isEmpty()) {
                    ++m_question;
                    setActive(std::nullopt);
                } else {
                    ask();
                }
            });
    ask();
}

void KWinCompositing::compositingToggled(bool active)
{
    ++m_question;
    setActive(active);
}

void KWinCompositing::ask()
{
    auto message = QDBusMessage::createMethodCall(service, path, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message.setArguments({interface, u"active"_s});
    message.setAutoStartService(false);
    auto* const asked = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked, question = ++m_question] {
        asked->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *asked;
        if (question == m_question) {
            setActive(reply.isError() ? std::nullopt : std::optional(reply.value().variant().toBool()));
        }
    });
}

void KWinCompositing::setActive(std::optional<bool> active)
{
    if (m_active != active) {
        m_active = active;
        emit activeChanged();
    }
}

} // namespace lapsa
