// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopAppearance.h"
#include "PlayedService.h"
#include "SessionBus.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

QPalette paletteFor(ColorScheme scheme)
{
    return QPalette(scheme == ColorScheme::Dark ? Qt::black : Qt::white);
}

constexpr uint noPreference = 0;
constexpr uint preferDark = 1;
constexpr uint preferLight = 2;

} // namespace

/// A settings portal that is played, on a bus connection of its own.
class PlayedPortal final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    enum class Version
    {
        Old,
        New,
        Silent,
    };

    PlayedPortal(const QString& address, uint scheme, Version version)
        : m_connection(QDBusConnection::connectToBus(address, u"portal-%1"_s.arg(++s_count)))
        , m_scheme(scheme)
        , m_version(version)
    {
        m_connection.registerObject(u"/org/freedesktop/portal/desktop"_s, this, QDBusConnection::ExportScriptableSlots);
        if (!m_connection.registerService(u"org.freedesktop.portal.Desktop"_s)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedPortal() override { leaveBus(this, u"/org/freedesktop/portal/desktop"_s, m_connection); }

    void change(uint scheme, const QString& group = u"org.freedesktop.appearance"_s,
                const QString& key = u"color-scheme"_s)
    {
        auto signal = QDBusMessage::createSignal(u"/org/freedesktop/portal/desktop"_s,
                                                 u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s);
        signal.setArguments({group, key, QVariant::fromValue(QDBusVariant(scheme))});
        m_connection.send(signal);
    }

    int questions = 0;

public slots:

    Q_SCRIPTABLE QDBusVariant ReadOne(const QString& group, const QString& key)
    {
        ++questions;
        if (m_version == Version::Old) {
            sendErrorReply(QDBusError::UnknownMethod);
            return {};
        }
        setDelayedReply(m_version == Version::Silent);
        return answer(group, key);
    }

    Q_SCRIPTABLE QDBusVariant Read(const QString& group, const QString& key)
    {
        ++questions;
        return QDBusVariant(QVariant::fromValue(answer(group, key)));
    }

private:
    QDBusVariant answer(const QString& group, const QString& key)
    {
        if (group != u"org.freedesktop.appearance"_s || key != u"color-scheme"_s) {
            sendErrorReply(QDBusError::InvalidArgs);
        }
        return QDBusVariant(m_scheme);
    }

    static inline int s_count = 0;
    QDBusConnection m_connection;
    uint m_scheme;
    Version m_version;
};

class FreedesktopAppearanceTest final : public QObject
{
    Q_OBJECT

private slots:

    void withNothingForcedTheDesktopsSettingHolds_data()
    {
        QTest::addColumn<uint>("setting");
        QTest::addColumn<bool>("old");
        QTest::addColumn<ColorScheme>("scheme");

        QTest::newRow("dark, old portal") << preferDark << true << ColorScheme::Dark;
        QTest::newRow("dark, new portal") << preferDark << false << ColorScheme::Dark;
        QTest::newRow("light") << preferLight << true << ColorScheme::Light;
        QTest::newRow("no preference") << noPreference << false << ColorScheme::Light;
        QTest::newRow("a value of the future") << 7U << false << ColorScheme::Light;
    }

    void withNothingForcedTheDesktopsSettingHolds()
    {
        QFETCH(const uint, setting);
        QFETCH(const bool, old);
        QFETCH(const ColorScheme, scheme);
        const PlayedPortal portal(m_bus.address(), setting,
                                  old ? PlayedPortal::Version::Old : PlayedPortal::Version::New);
        FreedesktopAppearance appearance(paletteFor);

        appearance.setForcedScheme(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(portal.questions, old ? 2 : 1, patience);

        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), scheme, patience);
        QTRY_COMPARE_WITH_TIMEOUT(QApplication::palette().window().color(), paletteFor(scheme).window().color(),
                                  patience);
    }

    void thePaletteOfTheToolkitHoldsWhereThePortalHasNoPreference()
    {
        PlayedPortal portal(m_bus.address(), noPreference, PlayedPortal::Version::New);
        FreedesktopAppearance appearance(paletteFor, ColorScheme::Dark);

        appearance.setForcedScheme(std::nullopt);
        QCOMPARE(appearance.scheme(), ColorScheme::Dark);

        portal.change(preferLight);
        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), ColorScheme::Light, patience);
        portal.change(noPreference);
        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), ColorScheme::Dark, patience);
    }

    void aSwitchOfTheDesktopReachesOpenWindowsLive()
    {
        PlayedPortal portal(m_bus.address(), noPreference, PlayedPortal::Version::New);
        FreedesktopAppearance appearance(paletteFor);
        QWidget window;
        window.show();
        appearance.setForcedScheme(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(portal.questions, 1, patience);
        const QSignalSpy spy(&appearance, &Appearance::schemeChanged);

        portal.change(preferLight, u"org.freedesktop.appearance"_s, u"accent-color"_s);
        portal.change(preferDark, u"org.gnome.desktop.interface"_s);
        portal.change(preferDark);

        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), ColorScheme::Dark, patience);
        // The toolkit tells the windows in a later turn of its loop.
        QTRY_COMPARE_WITH_TIMEOUT(window.palette().window().color(), QColor(Qt::black), patience);
        QCOMPARE(spy.size(), 1);

        portal.change(preferDark);
        portal.change(preferLight);

        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), ColorScheme::Light, patience);
        QCOMPARE(spy.size(), 2);
    }

    void aForcedSchemeHoldsWhateverTheDesktopSays()
    {
        PlayedPortal portal(m_bus.address(), preferLight, PlayedPortal::Version::New);
        FreedesktopAppearance appearance(paletteFor);
        appearance.setForcedScheme(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(portal.questions, 1, patience);
        appearance.setForcedScheme(ColorScheme::Light);
        const QSignalSpy spy(&appearance, &Appearance::schemeChanged);

        portal.change(preferDark);
        // The portal's messages come in order: with this one the one before has arrived.
        FreedesktopAppearance other(paletteFor);
        other.setForcedScheme(std::nullopt);
        QTRY_COMPARE_WITH_TIMEOUT(portal.questions, 2, patience);
        portal.change(preferDark);
        QTRY_COMPARE_WITH_TIMEOUT(other.scheme(), ColorScheme::Dark, patience);

        QCOMPARE(appearance.scheme(), ColorScheme::Light);
        QCOMPARE(spy.size(), 0);

        appearance.setForcedScheme(std::nullopt);

        QCOMPARE(appearance.scheme(), ColorScheme::Dark);
        QCOMPARE(spy.size(), 1);
    }

    void withADarkSchemeForcedNobodyIsAsked()
    {
        const PlayedPortal portal(m_bus.address(), preferLight, PlayedPortal::Version::New);
        FreedesktopAppearance appearance(paletteFor);

        appearance.setForcedScheme(ColorScheme::Dark);
        QCOMPARE(appearance.scheme(), ColorScheme::Dark);
        FreedesktopAppearance other(paletteFor);
        other.setForcedScheme(std::nullopt);
        QTRY_VERIFY_WITH_TIMEOUT(portal.questions > 0, patience);

        QCOMPARE(portal.questions, 1);
    }

    void aPortalThatComesLaterIsAskedAndOneThatGoesLeavesLight()
    {
        FreedesktopAppearance appearance(paletteFor);
        appearance.setForcedScheme(std::nullopt);
        QCOMPARE(appearance.scheme(), ColorScheme::Light);

        auto portal = std::make_unique<PlayedPortal>(m_bus.address(), preferDark, PlayedPortal::Version::New);
        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), ColorScheme::Dark, patience);

        portal.reset();
        QTRY_COMPARE_WITH_TIMEOUT(appearance.scheme(), ColorScheme::Light, patience);
    }

    void aPortalThatNeverAnswersHoldsNobodyUp()
    {
        const PlayedPortal portal(m_bus.address(), preferDark, PlayedPortal::Version::Silent);
        // A call that waits does so for 25 seconds; a busy machine may be late by much of one.
        constexpr qint64 limit = 5000;
        QElapsedTimer timer;
        timer.start();

        FreedesktopAppearance appearance(paletteFor);
        appearance.setForcedScheme(std::nullopt);

        QVERIFY2(timer.elapsed() < limit, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(appearance.scheme(), ColorScheme::Light);
    }

private:
    SessionBus m_bus;
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FreedesktopAppearanceTest)
#include "FreedesktopAppearance_test.moc"
