// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "JSONEncoder.h"
#include "LapsaProcess.h"
#include "LapsaSettings.h"

#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 40'000;

using Button = VirtualDisplay::Button;

enum class Bar
{
    Xfce,
    Lxqt,
    Trayer,
};

void start(DesktopSession& desktop, Bar bar, Edge edge = Edge::Top)
{
    switch (bar) {
    case Bar::Xfce:
        desktop.startXfcePanel(edge);
        break;
    case Bar::Lxqt:
        desktop.startLxqtPanel(edge);
        break;
    case Bar::Trayer:
        desktop.startTrayer(edge);
        break;
    }
}

bool installed(Bar bar)
{
    return bar != Bar::Lxqt || !QStandardPaths::findExecutable(u"lxqt-panel"_s).isEmpty();
}

/// The panel of LXQt would bring a desktop's libraries with it: it serves where it is there anyway.
#define SKIP_UNLESS_INSTALLED(bar)                                                                                     \
    if (!installed(bar)) {                                                                                             \
        QSKIP("lxqt-panel is not installed");                                                                          \
    }

bool preferencesAreOpen()
{
    constexpr QSize preferencesSize(620, 620);
    const QList<QRect> windows = VirtualDisplay::windowsOfClass(u"lapsa"_s);
    return std::ranges::any_of(windows, [&](const QRect& window) { return window.size() == preferencesSize; });
}

void addBars()
{
    QTest::addColumn<Bar>("bar");
    QTest::newRow("the panel of Xfce, status notifier items") << Bar::Xfce;
    QTest::newRow("the panel of LXQt, status notifier items") << Bar::Lxqt;
    QTest::newRow("trayer, embedded icons") << Bar::Trayer;
}

} // namespace

} // namespace lapsa::test

Q_DECLARE_METATYPE(lapsa::test::Bar)
Q_DECLARE_METATYPE(lapsa::test::Edge)

namespace lapsa::test {

/// The program in the trays of real desktops, with real clicks.
class TrayDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void aLeftClickOpensThePanelAndTheNextClosesIt_data() { addBars(); }

    void aLeftClickOpensThePanelAndTheNextClosesIt()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        VirtualDisplay::click(desktop.trayIcon()->center());
        QTRY_VERIFY_WITH_TIMEOUT(DesktopSession::lapsaPanel(), patience);
        VirtualDisplay::click(desktop.trayIcon()->center());
        QTRY_VERIFY_WITH_TIMEOUT(!DesktopSession::lapsaPanel(), patience);

        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void aPanelThatClosesByItselfIsClosedByAClickOnTheIconAsWell_data() { addBars(); }

    void aPanelThatClosesByItselfIsClosedByAClickOnTheIconAsWell()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        LapsaSettings settings;
        settings.keepPanelOpen = false;
        desktop.home().writeDataFile(u"settings.json"_s, JSONEncoder::lapsa().encode(settings));
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        VirtualDisplay::click(desktop.trayIcon()->center());
        QTRY_VERIFY_WITH_TIMEOUT(DesktopSession::lapsaPanel(), patience);
        VirtualDisplay::click(desktop.trayIcon()->center());
        QTRY_VERIFY_WITH_TIMEOUT(!DesktopSession::lapsaPanel(), patience);
        // It would come up again at once if the click were taken for another one.
        VirtualDisplay::click(QPoint(10, 900));
        QTest::qWait(0);

        QVERIFY(!DesktopSession::lapsaPanel());
    }

    void aRightClickOpensTheMenuAndALeftClickStillOpensThePanel_data() { addBars(); }

    void aRightClickOpensTheMenuAndALeftClickStillOpensThePanel()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        const QPoint icon = desktop.trayIcon()->center();

        VirtualDisplay::click(icon, Button::Right);
        QTRY_VERIFY_WITH_TIMEOUT(desktop.menu(), patience);
        QVERIFY(!DesktopSession::lapsaPanel());
        VirtualDisplay::press(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!desktop.menu(), patience);
        VirtualDisplay::click(icon);

        QTRY_VERIFY_WITH_TIMEOUT(DesktopSession::lapsaPanel(), patience);
        QVERIFY(!desktop.menu());
    }

    void theMenuIsUsedFromTheKeyboard_data() { addBars(); }

    void theMenuIsUsedFromTheKeyboard()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        VirtualDisplay::click(desktop.trayIcon()->center(), Button::Right);
        QTRY_VERIFY_WITH_TIMEOUT(desktop.menu(), patience);
        VirtualDisplay::press(u"Up"_s); // the last entry
        VirtualDisplay::press(u"Return"_s);

        QCOMPARE(lapsa.exitCode(), 0);
    }

    void theShortcutsOfTheMenuWorkWhileItIsOpen_data() { addBars(); }

    void theShortcutsOfTheMenuWorkWhileItIsOpen()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        const QPoint icon = desktop.trayIcon()->center();

        VirtualDisplay::click(icon, Button::Right);
        QTRY_VERIFY_WITH_TIMEOUT(desktop.menu(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(openedByShortcut(desktop), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!desktop.menu(), patience);
        VirtualDisplay::click(icon, Button::Right);
        QTRY_VERIFY_WITH_TIMEOUT(desktop.menu(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(endedByShortcut(desktop, lapsa), patience);

        QCOMPARE(lapsa.exitCode(), 0);
    }

    void theShortcutsOfAClosedMenuDoNothing_data() { addBars(); }

    void theShortcutsOfAClosedMenuDoNothing()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        const QPoint icon = desktop.trayIcon()->center();
        VirtualDisplay::click(icon, Button::Right);
        QTRY_VERIFY_WITH_TIMEOUT(desktop.menu(), patience);
        VirtualDisplay::press(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!desktop.menu(), patience);

        VirtualDisplay::press(u"ctrl+q"_s);

        // It is alive and does what it is asked, which it could not if it were on its way out.
        VirtualDisplay::click(icon);
        QTRY_VERIFY_WITH_TIMEOUT(DesktopSession::lapsaPanel(), patience);
        QVERIFY(lapsa.running());
    }

    void thePanelHangsAtTheIconWhereverTheBarIs_data()
    {
        QTest::addColumn<Bar>("bar");
        QTest::addColumn<Edge>("edge");
        QTest::addColumn<QRect>("panel");
        QTest::newRow("Xfce, top") << Bar::Xfce << Edge::Top << QRect(850, 29, 430, 560);
        QTest::newRow("Xfce, bottom") << Bar::Xfce << Edge::Bottom << QRect(850, 435, 430, 560);
        QTest::newRow("Xfce, left") << Bar::Xfce << Edge::Left << QRect(29, 464, 430, 560);
        QTest::newRow("Xfce, right") << Bar::Xfce << Edge::Right << QRect(821, 464, 430, 560);
        QTest::newRow("LXQt, top") << Bar::Lxqt << Edge::Top << QRect(850, 32, 430, 560);
        QTest::newRow("LXQt, bottom") << Bar::Lxqt << Edge::Bottom << QRect(850, 432, 430, 560);
        QTest::newRow("trayer, top, inside the work area") << Bar::Trayer << Edge::Top << QRect(850, 27, 430, 560);
        QTest::newRow("trayer, bottom") << Bar::Trayer << Edge::Bottom << QRect(850, 437, 430, 560);
    }

    void thePanelHangsAtTheIconWhereverTheBarIs()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        QFETCH(const Edge, edge);
        QFETCH(const QRect, panel);
        DesktopSession desktop;
        start(desktop, bar, edge);
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        VirtualDisplay::click(desktop.trayIcon()->center());

        QTRY_COMPARE_WITH_TIMEOUT(DesktopSession::lapsaPanel(), std::optional(panel), patience);
    }

    void thePanelStaysInSightWhileScreensComeAndGo()
    {
        DesktopSession desktop;
        desktop.startTrayer();
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        setMonitor({u"--setmonitor"_s, u"left"_s, u"640/170x1024/270+0+0"_s, u"screen"_s});
        setMonitor({u"--setmonitor"_s, u"right"_s, u"640/170x1024/270+640+0"_s, u"none"_s});
        VirtualDisplay::click(desktop.trayIcon()->center());
        QTRY_COMPARE_WITH_TIMEOUT(DesktopSession::lapsaPanel(), std::optional(QRect(850, 27, 430, 560)), patience);

        setMonitor({u"--delmonitor"_s, u"right"_s});
        setMonitor({u"--delmonitor"_s, u"left"_s});
        VirtualDisplay::click(desktop.trayIcon()->center());
        QTRY_VERIFY_WITH_TIMEOUT(!DesktopSession::lapsaPanel(), patience);
        VirtualDisplay::click(desktop.trayIcon()->center());

        QTRY_COMPARE_WITH_TIMEOUT(DesktopSession::lapsaPanel(), std::optional(QRect(850, 27, 430, 560)), patience);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void theIconComesWithABarThatIsStartedLater_data() { addBars(); }

    void theIconComesWithABarThatIsStartedLater()
    {
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.bus().hasOwner(u"org.lapsa.Lapsa"_s), patience);

        start(desktop, bar);

        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        clickOpensThePanel(desktop);
    }

    void theIconMovesFromOneKindOfTrayToTheOther_data()
    {
        QTest::addColumn<Bar>("before");
        QTest::addColumn<Bar>("after");
        QTest::newRow("from embedded icons to items of Xfce") << Bar::Trayer << Bar::Xfce;
        QTest::newRow("from embedded icons to items of LXQt") << Bar::Trayer << Bar::Lxqt;
        QTest::newRow("from items to embedded icons") << Bar::Xfce << Bar::Trayer;
        QTest::newRow("from items to items") << Bar::Xfce << Bar::Lxqt;
    }

    void theIconMovesFromOneKindOfTrayToTheOther()
    {
        QFETCH(const Bar, before);
        QFETCH(const Bar, after);
        SKIP_UNLESS_INSTALLED(after);
        DesktopSession desktop;
        start(desktop, before);
        const LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        desktop.killPanel();
        start(desktop, after);

        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        clickOpensThePanel(desktop);
    }

    void theIconComesBackHoweverOftenTheBarCrashes_data() { addBars(); }

    void theIconComesBackHoweverOftenTheBarCrashes()
    {
        constexpr int crashes = 3;
        QFETCH(const Bar, bar);
        SKIP_UNLESS_INSTALLED(bar);
        DesktopSession desktop;
        start(desktop, bar);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        for (int crash = 0; crash < crashes; ++crash) {
            desktop.killPanel();
            start(desktop, bar);
            QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);
        }

        clickOpensThePanel(desktop);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void theIconGoesWithTheProgram()
    {
        DesktopSession desktop;
        desktop.startXfcePanel();
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(desktop.trayIcon(), patience);

        QCOMPARE(lapsa.terminate(), 0);

        QTRY_VERIFY_WITH_TIMEOUT(!desktop.trayIcon(), patience);
    }

private:
    static void setMonitor(const QStringList& arguments)
    {
        // It writes nothing.
        std::ignore = outputOf(u"xrandr"_s, arguments);
    }

    /// One try: a menu is seen a moment before it has the keyboard.
    static bool openedByShortcut(const DesktopSession& desktop)
    {
        if (desktop.menu()) {
            VirtualDisplay::press(u"ctrl+comma"_s);
        }
        return preferencesAreOpen();
    }

    static bool endedByShortcut(const DesktopSession& desktop, const LapsaProcess& lapsa)
    {
        if (desktop.menu()) {
            VirtualDisplay::press(u"ctrl+q"_s);
        }
        return !lapsa.running();
    }

    static void clickOpensThePanel(const DesktopSession& desktop)
    {
        QTRY_VERIFY_WITH_TIMEOUT(openedByClick(desktop), patience);
    }

    /// The bar may still be laying itself out.
    static bool openedByClick(const DesktopSession& desktop)
    {
        if (!DesktopSession::lapsaPanel() && desktop.trayIcon()) {
            VirtualDisplay::click(desktop.trayIcon()->center());
            std::ignore = QTest::qWaitFor([] { return DesktopSession::lapsaPanel().has_value(); }, 2000);
        }
        return DesktopSession::lapsaPanel().has_value();
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::TrayDesktopTest)

#include "Tray_desktop_test.moc"
