// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopAppearance.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QPalette>

#include <utility>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;
const QString settingsGroup = u"org.freedesktop.appearance"_s;
const QString settingsKey = u"color-scheme"_s;

/// "1: Prefer dark appearance" of the portal's documentation; 0, 2 and unknown values are light here.
constexpr uint preferDark = 1;

ColorScheme schemeOf(QVariant value)
{
    // Read() wraps the value twice, ReadOne() and the signal once.
    while (value.metaType() == QMetaType::fromType<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value.toUInt() == preferDark ? ColorScheme::Dark : ColorScheme::Light;
}

} // namespace

/// The desktop's setting as the settings portal tells it.
class FreedesktopAppearance::SettingsPortal final : public QObject
{
    Q_OBJECT

public:
    SettingsPortal()
        : m_watcher(service, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange)
    {
        QDBusConnection::sessionBus().connect(service, path, interface, u"SettingChanged"_s, this,
                                              SLOT(settingChanged(QString, QString, QDBusVariant)));
        connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
                [this](const QString&, const QString&, const QString& newOwner) { ownerChanged(newOwner); });
        ask(u"ReadOne"_s);
    }

    [[nodiscard]] ColorScheme scheme() const { return m_scheme; }

signals:
    void schemeChanged();

private slots:

    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value)
    {
        if (group == settingsGroup && key == settingsKey) {
            // What is still being asked for is older than this.
            ++m_question;
            setScheme(schemeOf(value.variant()));
        }
    }

private:
    void ownerChanged(const QString& newOwner)
    {
        if (newOwner.isEmpty()) {
            ++m_question;
            setScheme(ColorScheme::Light);
        } else {
            ask(u"ReadOne"_s);
        }
    }

    void ask(const QString& method)
    {
        auto message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments({settingsGroup, settingsKey});
        auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
        const int question = ++m_question;
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, method, question] {
            watcher->deleteLater();
            if (question == m_question) {
                answer(watcher->reply(), method);
            }
        });
    }

    void answer(const QDBusMessage& reply, const QString& method)
    {
        if (reply.type() == QDBusMessage::ReplyMessage) {
            setScheme(schemeOf(reply.arguments().value(0)));
        } else if (method == u"ReadOne"_s && reply.errorName() == u"org.freedesktop.DBus.Error.UnknownMethod"_s) {
            // Portals before 1.17 know the older call only.
            ask(u"Read"_s);
        } else {
            setScheme(ColorScheme::Light);
        }
    }

    void setScheme(ColorScheme scheme)
    {
        if (m_scheme != scheme) {
            m_scheme = scheme;
            emit schemeChanged();
        }
    }

    QDBusServiceWatcher m_watcher;
    int m_question = 0;
    ColorScheme m_scheme = ColorScheme::Light;
};

FreedesktopAppearance::FreedesktopAppearance(std::function<QPalette(ColorScheme)> paletteFor)
    : m_paletteFor(std::move(paletteFor))
{}

FreedesktopAppearance::~FreedesktopAppearance() = default;

void FreedesktopAppearance::setForcedScheme(std::optional<ColorScheme> scheme)
{
    m_forced = scheme;
    if (!m_forced && !m_portal) {
        m_portal = std::make_unique<SettingsPortal>();
        connect(m_portal.get(), &SettingsPortal::schemeChanged, this, &FreedesktopAppearance::follow);
    }
    apply(m_forced ? *m_forced : m_portal->scheme());
}

void FreedesktopAppearance::follow()
{
    if (!m_forced) {
        apply(m_portal->scheme());
    }
}

void FreedesktopAppearance::apply(ColorScheme scheme)
{
    if (m_applied == scheme) {
        return;
    }
    m_applied = scheme;
    QApplication::setPalette(m_paletteFor(scheme));
    if (m_scheme != scheme) {
        m_scheme = scheme;
        emit schemeChanged(scheme);
    }
}

} // namespace lapsa

#include "FreedesktopAppearance.moc"
