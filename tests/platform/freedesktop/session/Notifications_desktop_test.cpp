// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "LapsaProcess.h"
#include "SessionBus.h"
#include "Settling.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <functional>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 40'000;

/// The daemon draws its buttons in the bottom right corner.
QPoint placeOfButton(const QRect& bubble)
{
    return bubble.bottomRight() - QPoint(56, 31);
}

} // namespace

/// Warnings on the notification daemons of real desktops, answered by real clicks.
class NotificationsDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_home.emplace();
        qputenv("XDG_CONFIG_HOME", m_home->makeFolder(u".config"_s).toUtf8());
        qputenv("XDG_CACHE_HOME", m_home->makeFolder(u".cache"_s).toUtf8());
        qputenv("XDG_RUNTIME_DIR", m_home->makeFolder(u"run"_s).toUtf8());
        qputenv("GSETTINGS_BACKEND", "memory");
        m_bus.emplace();
        m_display.emplace();
    }

    void cleanup()
    {
        m_daemon.reset();
        m_settingsDaemon.reset();
        m_display.reset();
        m_bus.reset();
        m_home.reset();
    }

    void aClickOnAWarningLocksTheItem()
    {
        startDunst();
        makeItemThatIsDueSoon(u"report.zip"_s);
        LapsaProcess lapsa;

        QVERIFY(succeeds([this] { return clickedAndLocked(u"Dunst"_s, &QRect::center); }));

        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void theButtonOfAWarningLocksTheItem()
    {
        startXfceDaemon();
        makeItemThatIsDueSoon(u"report.zip"_s);
        LapsaProcess lapsa;

        QVERIFY(succeeds([this] { return clickedAndLocked(u"xfce4-notifyd"_s, placeOfButton); }));

        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void aWarningIsShownAgainByADaemonThatWasRestarted()
    {
        startDunst();
        makeItemThatIsDueSoon(u"first.zip"_s);
        LapsaProcess lapsa;
        QVERIFY(comesTrue([] { return VirtualDisplay::windowOfClass(u"Dunst"_s); }));
        QCOMPARE(lapsa.terminate(), 0);
        m_daemon.reset();
        startDunst();
        makeItemThatIsDueSoon(u"first.zip"_s);

        LapsaProcess again;

        QVERIFY(succeeds([this] { return clickedAndLocked(u"Dunst"_s, &QRect::center); }));
        QCOMPARE(again.terminate(), 0);
    }

    void markupInANameIsShownAsItIs()
    {
        startDunst();
        makeItemThatIsDueSoon(u"<b>R&D<b> 100%d.txt"_s);
        LapsaProcess lapsa;
        QVERIFY(comesTrue([] { return VirtualDisplay::windowOfClass(u"Dunst"_s); }));

        const QJsonDocument history = QJsonDocument::fromJson([] {
            std::ignore = outputOf(u"dunstctl"_s, {u"close-all"_s}); // it writes nothing
            return outputOf(u"dunstctl"_s, {u"history"_s});
        }());

        const QString body = history[u"data"_s][0][0][u"body"_s][u"data"_s].toString();
        QVERIFY2(body.startsWith(u"&lt;b&gt;R&amp;D&lt;b&gt; 100%d.txt will"_s), qPrintable(body));
        QCOMPARE(lapsa.terminate(), 0);
    }

    void withoutADaemonTheWarningIsSilent()
    {
        makeItemThatIsDueSoon(u"report.zip"_s);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(item()[u"fiveMinuteWarningSent"_s].toBool(), patience);

        QCOMPARE(lapsa.terminate(), 0);

        QCOMPARE(lapsa.standardError(), QByteArray());
        QVERIFY(!item()[u"locked"_s].toBool());
    }

private:
    void startDunst()
    {
        const QString configuration =
            m_home->makeFile(u"dunstrc"_s, "[global]\n  mouse_left_click = do_action, close_current\n"
                                           "  origin = top-right\n  idle_threshold = 0\n  timeout = 0\n");
        m_daemon.emplace(u"dunst"_s, QStringList{u"-conf"_s, configuration});
        waitForServer();
    }

    void startXfceDaemon()
    {
        m_settingsDaemon.emplace(foundProgram(u"xfce4/xfconf/xfconfd"_s));
        QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(u"org.xfce.Xfconf"_s), patience);
        m_daemon.emplace(foundProgram(u"xfce4/notifyd/xfce4-notifyd"_s));
        waitForServer();
    }

    void waitForServer() const
    {
        QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(u"org.freedesktop.Notifications"_s), patience);
    }

    void makeItemThatIsDueSoon(const QString& name) const
    {
        constexpr qint64 threeMinutes = 180;
        const QDateTime now = QDateTime::currentDateTimeUtc();
        const QJsonObject stored{
            {u"addedAt"_s, now.toString(Qt::ISODate)},
            {u"displayName"_s, name},
            {u"expiresAt"_s, now.addSecs(threeMinutes).toString(Qt::ISODate)},
            {u"fiveMinuteWarningSent"_s, false},
            {u"id"_s, u"6B2A7E0C-3B7B-4C7C-9C46-1D5C0A3E9F10"_s},
            {u"locked"_s, false},
            {u"path"_s, m_home->makeFile(u"docs/"_s + QString(name).remove(u'/'))},
        };
        m_home->writeDataFile(u"state.json"_s, QJsonDocument(QJsonArray{stored}).toJson());
    }

    [[nodiscard]] QJsonObject item() const { return storedList(*m_home, u"state.json"_s)[0].toObject(); }

    /// One look; a bubble may not take clicks while it still moves, so that this is asked again.
    template <typename Place>
    [[nodiscard]] bool clickedAndLocked(const QString& windowClass, Place place) const
    {
        if (item()[u"locked"_s].toBool()) {
            return true;
        }
        if (const std::optional<QRect> bubble = VirtualDisplay::windowOfClass(windowClass)) {
            VirtualDisplay::click(std::invoke(place, *bubble));
        }
        return false;
    }

    std::optional<TemporaryHome> m_home;
    std::optional<SessionBus> m_bus;
    std::optional<VirtualDisplay> m_display;
    std::optional<HelperProcess> m_settingsDaemon;
    std::optional<HelperProcess> m_daemon;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::NotificationsDesktopTest)
#include "Notifications_desktop_test.moc"
