// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PortalSetting.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;

} // namespace

PortalSetting::PortalSetting(QString group, QString key)
    : m_group(std::move(group))
    , m_key(std::move(key))
    , m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    // A signal cannot be connected to a slot whose types are unknown, and the toolkit makes its own known with the
    // first message only.
    qRegisterMetaType<QDBusVariant>();
    QDBusConnection::sessionBus().connect(service, path, interface, u"SettingChanged"_s, this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& newOwner) { ownerChanged(newOwner); });
    ask(u"ReadOne"_s);
}

void PortalSetting::settingChanged(const QString& group, const QString& key, const QDBusVariant& value)
{
    if (group == m_group && key == m_key) {
        // Answers still outstanding are older than this.
        ++m_question;
        setValue(value.variant());
    }
}

void PortalSetting::ownerChanged(const QString& newOwner)
{
    if (newOwner.isEmpty()) {
        ++m_question;
        setValue(QVariant());
    } else {
        ask(u"ReadOne"_s);
    }
}

void PortalSetting::ask(const QString& method)
{
    auto message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments({m_group, m_key});
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    const int question = ++m_question;
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, method, question] {
        watcher->deleteLater();
        if (question == m_question) {
            answer(watcher->reply(), method);
        }
    });
}

void PortalSetting::answer(const QDBusMessage& reply, const QString& method)
{
    if (reply.type() == QDBusMessage::ReplyMessage) {
        setValue(reply.arguments().value(0));
    } else if (method == u"ReadOne"_s && reply.errorName() == u"org.freedesktop.DBus.Error.UnknownMethod"_s) {
        // Portals before 1.17 have only the older call.
        ask(u"Read"_s);
    } else {
        setValue(QVariant());
    }
}

void PortalSetting::setValue(QVariant value)
{
    // Read() wraps the value twice, ReadOne() and the signal once.
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    if (m_value != value) {
        m_value = value;
        emit valueChanged();
    }
}

} // namespace lapsa
