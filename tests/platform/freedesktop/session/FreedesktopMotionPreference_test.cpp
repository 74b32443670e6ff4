// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopMotionPreference.h"
#include "PlayedService.h"
#include "PortalSetting.h"
#include "SessionBus.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QHash>
#include <QSignalSpy>
#include <QTest>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;
const QString gnome = u"org.gnome.desktop.interface enable-animations"_s;
const QString plasma = u"org.kde.kdeglobals.KDE AnimationDurationFactor"_s;

} // namespace

/// A settings portal that is played, on a bus connection of its own. It knows the settings that it is given.
class PlayedPortal final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    /// By group and key, with a blank between them.
    using Settings = QHash<QString, QVariant>;

    PlayedPortal(const QString& address, Settings settings)
        : m_connection(QDBusConnection::connectToBus(address, u"portal-%1"_s.arg(++s_count)))
        , m_settings(std::move(settings))
    {
        m_connection.registerObject(u"/org/freedesktop/portal/desktop"_s, this, QDBusConnection::ExportScriptableSlots);
        if (!m_connection.registerService(u"org.freedesktop.portal.Desktop"_s)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedPortal() override { leaveBus(this, u"/org/freedesktop/portal/desktop"_s, m_connection); }

    void change(const QString& setting, const QVariant& value)
    {
        m_settings[setting] = value;
        auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                 u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal.setArguments(
            {setting.section(u' ', 0, 0), setting.section(u' ', 1), QVariant::fromValue(QDBusVariant(value))});
        m_connection.send(signal);
    }

    int questions = 0;

public slots:

    Q_SCRIPTABLE QDBusVariant ReadOne(const QString& group, const QString& key)
    {
        ++questions;
        const QString setting = group + u' ' + key;
        if (!m_settings.contains(setting)) {
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"Requested setting not found"_s);
            return {};
        }
        return QDBusVariant(m_settings[setting]);
    }

private:
    static inline int s_count = 0;
    QDBusConnection m_connection;
    Settings m_settings;
};

class FreedesktopMotionPreferenceTest final : public QObject
{
    Q_OBJECT

private slots:

    void theDesktopsSettingHolds_data()
    {
        QTest::addColumn<PlayedPortal::Settings>("settings");
        QTest::addColumn<bool>("enabled");

        QTest::newRow("nothing is known") << PlayedPortal::Settings() << true;
        QTest::newRow("on") << PlayedPortal::Settings{{gnome, true}} << true;
        QTest::newRow("off") << PlayedPortal::Settings{{gnome, false}} << false;
        QTest::newRow("Plasma: as usual") << PlayedPortal::Settings{{plasma, u"1"_s}} << true;
        QTest::newRow("Plasma: slow") << PlayedPortal::Settings{{plasma, u"2.82"_s}} << true;
        QTest::newRow("Plasma: never set") << PlayedPortal::Settings{{plasma, QString()}} << true;
        QTest::newRow("Plasma: at once") << PlayedPortal::Settings{{plasma, u"0"_s}} << false;
        QTest::newRow("Plasma: at once, as a number") << PlayedPortal::Settings{{plasma, 0.0}} << false;
        QTest::newRow("one of them says no") << PlayedPortal::Settings{{gnome, true}, {plasma, u"0"_s}} << false;
    }

    void theDesktopsSettingHolds()
    {
        QFETCH(const PlayedPortal::Settings, settings);
        QFETCH(const bool, enabled);
        PlayedPortal portal(m_bus.address(), settings);
        const PortalSetting other(u"test"_s, u"other"_s);

        const FreedesktopMotionPreference preference;
        QTRY_COMPARE_WITH_TIMEOUT(portal.questions, 3, patience);
        // The portal's messages come in order: with this one the answers have arrived.
        portal.change(u"test other"_s, true);
        QTRY_VERIFY_WITH_TIMEOUT(other.value().isValid(), patience);

        QCOMPARE(preference.animationsEnabled(), enabled);
    }

    void aChangeIsToldLive()
    {
        PlayedPortal portal(m_bus.address(), {{gnome, true}});
        const FreedesktopMotionPreference preference;
        QSignalSpy spy(&preference, &MotionPreference::animationsEnabledChanged);
        QTRY_COMPARE_WITH_TIMEOUT(portal.questions, 2, patience);

        portal.change(gnome, false);
        QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, patience);
        QCOMPARE(spy.takeFirst(), QVariantList{false});
        QVERIFY(!preference.animationsEnabled());

        portal.change(gnome, true);
        QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, patience);
        QCOMPARE(spy.takeFirst(), QVariantList{true});
        QVERIFY(preference.animationsEnabled());
    }

    void withoutAPortalThingsMove()
    {
        auto portal = std::make_unique<PlayedPortal>(m_bus.address(), PlayedPortal::Settings{{gnome, false}});
        const FreedesktopMotionPreference preference;
        QTRY_VERIFY_WITH_TIMEOUT(!preference.animationsEnabled(), patience);

        portal.reset();

        QTRY_VERIFY_WITH_TIMEOUT(preference.animationsEnabled(), patience);
    }

private:
    SessionBus m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FreedesktopMotionPreferenceTest)
#include "FreedesktopMotionPreference_test.moc"
