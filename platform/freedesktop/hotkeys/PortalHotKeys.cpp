// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PortalHotKeys.h"

#include "PortalRequest.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QList>
#include <QVariantMap>

#include <algorithm>
#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;

QDBusMessage callOf(const QString& method)
{
    return QDBusMessage::createMethodCall(service, path, interface, method);
}

/// Unique among the sessions of this process, and the same at each start: desktops that do not know which program calls
/// know its keys by it.
QString newSessionToken()
{
    static int count = 0;
    return QCoreApplication::applicationName().toLower() + QString::number(++count);
}

/// The key in the syntax of the freedesktop.org shortcuts specification.
QString triggerOf(const HotKey& key)
{
    return (key.super ? u"LOGO+"_s : QString()) + (key.shift ? u"SHIFT+"_s : QString()) + QLatin1Char(key.letter);
}

} // namespace

/// A shortcut as the portal expects it: (sa{sv}).
struct PortalShortcut
{
    QString identifier;
    QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument << shortcut.identifier << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut)
{
    argument.beginStructure();
    argument >> shortcut.identifier >> shortcut.properties;
    argument.endStructure();
    return argument;
}

namespace {

/// One key, in a session of its own with the portal.
class PortalRegistration final : public QObject, public HotKeyRegistration
{
    Q_OBJECT

public:
    PortalRegistration(HotKey key, std::function<void()> pressed, HotKeys& fallback)
        : m_key(std::move(key))
        , m_pressed(std::move(pressed))
        , m_fallback(fallback)
        , m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
    {
        QDBusConnection::sessionBus().connect(service, path, interface, u"Activated"_s, this,
                                              SLOT(activated(QDBusObjectPath, QString, qulonglong, QVariantMap)));
        connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString& oldOwner, const QString& newOwner) {
                    ownerChanged(oldOwner, newOwner);
                });
        createSession();
    }

    PortalRegistration(const PortalRegistration&) = delete;
    PortalRegistration& operator=(const PortalRegistration&) = delete;

    ~PortalRegistration() override
    {
        if (!m_session.isEmpty()) {
            QDBusConnection::sessionBus().send(
                QDBusMessage::createMethodCall(service, m_session, sessionInterface, u"Close"_s));
        }
    }

private slots:

    void activated(const QDBusObjectPath& session, const QString& identifier, qulonglong /*timestamp*/,
                   const QVariantMap& /*options*/)
    {
        if (m_bound && session.path() == m_session && identifier == m_key.identifier) {
            // A copy, because the callback may release the key.
            const std::function<void()> pressed = m_pressed;
            pressed();
        }
    }

    void sessionClosed()
    {
        endSession();
        useFallback();
    }

private:
    void createSession()
    {
        m_request = std::make_unique<PortalRequest>(
            callOf(u"CreateSession"_s),
            // KDE's portal takes keys only here; told of them later, it opens its settings and binds nothing.
            QVariantMap{{u"session_handle_token"_s, newSessionToken()},
                        {u"shortcuts"_s, QVariant::fromValue(wantedShortcuts())}},
            [this](const PortalRequest::Answer& answer) { sessionCreated(answer); });
    }

    void sessionCreated(const PortalRequest::Answer& answer)
    {
        const QVariant handle = answer ? answer->value(u"session_handle"_s) : QVariant();
        // A string, though the documentation says that it will become a path.
        m_session = handle.metaType() == QMetaType::fromType<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path()
                                                                                : handle.toString();
        if (m_session.isEmpty()) {
            useFallback();
            return;
        }
        QDBusConnection::sessionBus().connect(service, m_session, sessionInterface, u"Closed"_s, this,
                                              SLOT(sessionClosed()));
        listShortcuts();
    }

    /// The desktop may have kept the key since an earlier start. Some show their settings with each key that is bound.
    void listShortcuts()
    {
        QDBusMessage call = callOf(u"ListShortcuts"_s);
        call << QVariant::fromValue(QDBusObjectPath(m_session));
        m_request = std::make_unique<PortalRequest>(call, QVariantMap(), [this](const PortalRequest::Answer& answer) {
            if (answer && isAmong(answer->value(u"shortcuts"_s))) {
                shortcutBound(answer);
            } else {
                bindShortcut();
            }
        });
    }

    [[nodiscard]] QList<PortalShortcut> wantedShortcuts() const
    {
        return {
            {m_key.identifier, {{u"description"_s, m_key.description}, {u"preferred_trigger"_s, triggerOf(m_key)}}}};
    }

    [[nodiscard]] bool isAmong(const QVariant& shortcuts) const
    {
        const auto known = qdbus_cast<QList<PortalShortcut>>(shortcuts);
        return std::ranges::find(known, m_key.identifier, &PortalShortcut::identifier) != known.end();
    }

    void bindShortcut()
    {
        const QString noParentWindow;
        QDBusMessage call = callOf(u"BindShortcuts"_s);
        call << QVariant::fromValue(QDBusObjectPath(m_session)) << QVariant::fromValue(wantedShortcuts())
             << noParentWindow;
        m_request = std::make_unique<PortalRequest>(
            call, QVariantMap(), [this](const PortalRequest::Answer& answer) { shortcutBound(answer); });
    }

    void shortcutBound(const PortalRequest::Answer& answer)
    {
        m_request.reset();
        m_bound = answer.has_value();
        if (m_bound) {
            m_fallbackRegistration.reset();
        } else {
            useFallback();
        }
    }

    void ownerChanged(const QString& oldOwner, const QString& newOwner)
    {
        if (oldOwner.isEmpty() && m_request && m_request->pending()) {
            // Our own request started the portal, which will answer it.
            return;
        }
        endSession();
        if (newOwner.isEmpty()) {
            useFallback();
        } else {
            createSession();
        }
    }

    /// Forgets a session that has ended.
    void endSession()
    {
        if (!m_session.isEmpty()) {
            QDBusConnection::sessionBus().disconnect(service, m_session, sessionInterface, u"Closed"_s, this,
                                                     SLOT(sessionClosed()));
        }
        m_request.reset();
        m_session.clear();
        m_bound = false;
    }

    void useFallback()
    {
        m_request.reset();
        if (!m_fallbackRegistration) {
            m_fallbackRegistration = m_fallback.registerHotKey(m_key, m_pressed);
        }
    }

    HotKey m_key;
    std::function<void()> m_pressed;
    HotKeys& m_fallback;
    QDBusServiceWatcher m_watcher;
    std::unique_ptr<PortalRequest> m_request;
    /// The session's object path; empty without a session.
    QString m_session;
    bool m_bound = false;
    std::unique_ptr<HotKeyRegistration> m_fallbackRegistration;
};

} // namespace

PortalHotKeys::PortalHotKeys(std::unique_ptr<HotKeys> fallback)
    : m_fallback(std::move(fallback))
{
    // A signal cannot be connected to a slot with unregistered types, and the toolkit registers its own only with the
    // first message.
    qRegisterMetaType<QDBusObjectPath>();
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

std::unique_ptr<HotKeyRegistration> PortalHotKeys::registerHotKey(const HotKey& key, std::function<void()> pressed)
{
    return std::make_unique<PortalRegistration>(key, std::move(pressed), *m_fallback);
}

} // namespace lapsa

#include "PortalHotKeys.moc"
