// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StatusNotifierItem.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString itemPath = u"/StatusNotifierItem"_s;
const QString menuPathText = u"/StatusNotifierItem/Menu"_s;
const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString watcherPath = u"/StatusNotifierWatcher"_s;
const QString watcherInterface = u"org.kde.StatusNotifierWatcher"_s;

} // namespace

StatusNotifierItem::StatusNotifierItem(const ProgramIdentity& identity)
    : m_identity(identity)
    , m_service(u"org.kde.StatusNotifierItem-%1-1"_s.arg(QCoreApplication::applicationPid()))
    , m_watcher(watcherName, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
{
    registerStatusNotifierTypes();
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return;
    }
    constexpr auto scriptable = QDBusConnection::ExportScriptableSlots | QDBusConnection::ExportScriptableSignals |
                                QDBusConnection::ExportScriptableProperties;
    bus.registerObject(menuPathText, &m_menu, scriptable);
    bus.registerObject(itemPath, this, scriptable);
    bus.registerService(m_service);
    // The name may also pass directly from one watcher to another.
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this, &StatusNotifierItem::watcherChanged);
    for (const QString& signal : {u"StatusNotifierHostRegistered"_s, u"StatusNotifierHostUnregistered"_s}) {
        bus.connect(watcherName, watcherPath, watcherInterface, signal, this, SLOT(askForHost()));
    }
    // This must be known before an icon is shown elsewhere. The bus itself answers, at once.
    if (bus.interface()->isServiceRegistered(watcherName)) {
        m_shown = true;
        announce();
    }
}

StatusNotifierItem::~StatusNotifierItem()
{
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterService(m_service);
    bus.unregisterObject(itemPath);
    bus.unregisterObject(menuPathText);
}

void StatusNotifierItem::setIcon(const QString& name, const QList<QImage>& images)
{
    m_iconName = name;
    m_pixmaps.clear();
    for (const QImage& image : images) {
        m_pixmaps.push_back(statusNotifierPixmap(image));
    }
    emit NewIcon();
}

void StatusNotifierItem::setToolTip(const QString& toolTip)
{
    m_toolTip = toolTip;
    emit NewToolTip();
}

QString StatusNotifierItem::category() const
{
    return u"ApplicationStatus"_s;
}

QString StatusNotifierItem::status() const
{
    return u"Active"_s;
}

StatusNotifierToolTip StatusNotifierItem::toolTip() const
{
    return {.iconName = {}, .pixmaps = {}, .title = m_toolTip, .text = {}};
}

QDBusObjectPath StatusNotifierItem::menuPath() const
{
    return QDBusObjectPath(menuPathText);
}

void StatusNotifierItem::Activate(int x, int y)
{
    emit activated(QPoint(x, y));
}

void StatusNotifierItem::ContextMenu(int x, int y)
{
    emit menuRequested(QPoint(x, y));
}

/// Lets the next window take the focus on compositors that require a token.
void StatusNotifierItem::ProvideXdgActivationToken(const QString& token)
{
    if (QGuiApplication::platformName().startsWith("wayland"_L1)) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // the toolkit removes it again
    }
}

void StatusNotifierItem::watcherChanged(const QString& /*name*/, const QString& /*before*/, const QString& now)
{
    if (now.isEmpty()) {
        ++m_question; // unanswered calls to it return an error later
        setShown(false);
    } else {
        announce();
    }
}

void StatusNotifierItem::announce()
{
    auto message =
        QDBusMessage::createMethodCall(watcherName, watcherPath, watcherInterface, u"RegisterStatusNotifierItem"_s);
    message.setArguments({m_service});
    message.setAutoStartService(false);
    QDBusConnection::sessionBus().asyncCall(message);
    askForHost();
}

/// A watcher may run without a tray host that shows its items.
void StatusNotifierItem::askForHost()
{
    auto message =
        QDBusMessage::createMethodCall(watcherName, watcherPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    message.setArguments({watcherInterface, u"IsStatusNotifierHostRegistered"_s});
    message.setAutoStartService(false);
    auto* const asked = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked, question = ++m_question] {
        asked->deleteLater();
        if (question != m_question) {
            return;
        }
        const QDBusPendingReply<QDBusVariant> reply = *asked;
        // A watcher without this property is itself a tray host.
        setShown(reply.isError() ? reply.error().type() != QDBusError::ServiceUnknown
                                 : reply.value().variant().toBool());
    });
}

void StatusNotifierItem::setShown(bool shown)
{
    if (m_shown != shown) {
        m_shown = shown;
        emit shownChanged();
    }
}

} // namespace lapsa
