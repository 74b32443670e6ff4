// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "JSONEncoder.h"
#include "LapsaProcess.h"
#include "LapsaSettings.h"
#include "Settling.h"

#include <QStandardPaths>
#include <QTest>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using Button = VirtualDisplay::Button;

enum class Taskbar
{
    Xfce,
    Lxqt,
    Trayer,
};

void startTaskbar(DesktopSession& desktop, Taskbar taskbar, Edge edge = Edge::Top)
{
    switch (taskbar) {
    case Taskbar::Xfce:
        desktop.startXfceTaskbar(edge);
        break;
    case Taskbar::Lxqt:
        desktop.startLxqtTaskbar(edge);
        break;
    case Taskbar::Trayer:
        desktop.startTrayer(edge);
        break;
    }
}

bool preferencesAreOpen()
{
    constexpr QSize preferencesSize(620, 620);
    const QList<QRect> windows = VirtualDisplay::windowsOfClass(u"lapsa"_s);
    return std::ranges::any_of(windows, [&](const QRect& window) { return window.size() == preferencesSize; });
}

void addTaskbars()
{
    QTest::addColumn<Taskbar>("taskbar");
    QTest::newRow("the taskbar of Xfce, status notifier items") << Taskbar::Xfce;
    QTest::newRow("the taskbar of LXQt, status notifier items") << Taskbar::Lxqt;
    QTest::newRow("trayer, embedded icons") << Taskbar::Trayer;
}

} // namespace

} // namespace lapsa::test

Q_DECLARE_METATYPE(lapsa::test::Taskbar)
Q_DECLARE_METATYPE(lapsa::test::Edge)

namespace lapsa::test {

/// The program in the trays of real desktops, with real clicks.
class TrayDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        // The taskbar of LXQt would bring a desktop's libraries with it: it serves where it is there anyway.
        if (QByteArray(QTest::currentDataTag()).contains("LXQt") &&
            QStandardPaths::findExecutable(u"lxqt-panel"_s).isEmpty()) {
            QSKIP("lxqt-panel is not installed");
        }
        m_desktop.emplace();
    }

    void cleanup()
    {
        m_lapsa.reset();
        m_desktop.reset();
    }

    void aLeftClickOpensThePanelAndTheNextClosesIt_data() { addTaskbars(); }

    void aLeftClickOpensThePanelAndTheNextClosesIt()
    {
        QVERIFY(begin());

        VirtualDisplay::click(icon());
        QVERIFY(comesTrue(&panel));
        VirtualDisplay::click(icon());
        QVERIFY(comesTrue([] { return !panel(); }));

        endsQuietly();
    }

    void aPanelThatClosesByItselfIsClosedByAClickOnTheIconAsWell_data()
    {
        QTest::addColumn<Taskbar>("taskbar");
        QTest::addColumn<bool>("slowly");
        QTest::newRow("Xfce, a quick click") << Taskbar::Xfce << false;
        QTest::newRow("Xfce, a slow click") << Taskbar::Xfce << true;
        QTest::newRow("LXQt, a quick click") << Taskbar::Lxqt << false;
        QTest::newRow("LXQt, a slow click") << Taskbar::Lxqt << true;
        QTest::newRow("trayer, a quick click") << Taskbar::Trayer << false;
        QTest::newRow("trayer, a slow click") << Taskbar::Trayer << true;
    }

    void aPanelThatClosesByItselfIsClosedByAClickOnTheIconAsWell()
    {
        QFETCH(const bool, slowly);
        const auto click = slowly ? &VirtualDisplay::clickSlowly : &clickQuickly;
        LapsaSettings settings;
        settings.keepPanelOpen = false;
        m_desktop->home().writeDataFile(u"settings.json"_s, JSONEncoder::lapsa().encode(settings));
        QVERIFY(begin());

        click(icon());
        QVERIFY(comesTrue(&panel));
        click(icon());
        QVERIFY(comesTrue([] { return !panel(); }));
        // Had the click been taken for one elsewhere and for another one on the icon, the panel would be on its way
        // back, and this one would close it.
        click(icon());

        QVERIFY(comesTrue(&panel));
    }

    void aRightClickOpensTheMenuAndALeftClickStillOpensThePanel_data() { addTaskbars(); }

    void aRightClickOpensTheMenuAndALeftClickStillOpensThePanel()
    {
        QVERIFY(begin());

        openMenu();
        QVERIFY(!panel());
        closeMenu();
        VirtualDisplay::click(icon());

        QVERIFY(comesTrue(&panel));
        QVERIFY(!m_desktop->menu());
    }

    void theMenuIsUsedFromTheKeyboard_data() { addTaskbars(); }

    void theMenuIsUsedFromTheKeyboard()
    {
        QVERIFY(begin());

        openMenu();
        VirtualDisplay::press(u"Up"_s); // the last entry
        VirtualDisplay::press(u"Return"_s);

        QCOMPARE(m_lapsa->exitCode(), 0);
    }

    void theShortcutsOfTheMenuWorkWhileItIsOpen_data() { addTaskbars(); }

    void theShortcutsOfTheMenuWorkWhileItIsOpen()
    {
        QVERIFY(begin());

        openMenu();
        QVERIFY(succeeds([this] { return openedByShortcut(); }));
        QVERIFY(comesTrue([this] { return !m_desktop->menu(); }));
        openMenu();
        QVERIFY(succeeds([this] { return endedByShortcut(); }));

        QCOMPARE(m_lapsa->exitCode(), 0);
    }

    void theShortcutsOfAClosedMenuDoNothing_data() { addTaskbars(); }

    void theShortcutsOfAClosedMenuDoNothing()
    {
        QVERIFY(begin());
        openMenu();
        closeMenu();

        VirtualDisplay::press(u"ctrl+q"_s);

        // It is alive and does what it is asked, which it could not if it were on its way out.
        VirtualDisplay::click(icon());
        QVERIFY(comesTrue(&panel));
        QVERIFY(m_lapsa->running());
    }

    void thePanelHangsAtTheIconWhereverTheTaskbarIs_data()
    {
        QTest::addColumn<Taskbar>("taskbar");
        QTest::addColumn<Edge>("edge");
        QTest::addColumn<QRect>("place");
        QTest::newRow("Xfce, top") << Taskbar::Xfce << Edge::Top << QRect(850, 29, 430, 560);
        QTest::newRow("Xfce, bottom") << Taskbar::Xfce << Edge::Bottom << QRect(850, 435, 430, 560);
        QTest::newRow("Xfce, left") << Taskbar::Xfce << Edge::Left << QRect(29, 464, 430, 560);
        QTest::newRow("Xfce, right") << Taskbar::Xfce << Edge::Right << QRect(821, 464, 430, 560);
        QTest::newRow("LXQt, top") << Taskbar::Lxqt << Edge::Top << QRect(850, 32, 430, 560);
        QTest::newRow("LXQt, bottom") << Taskbar::Lxqt << Edge::Bottom << QRect(850, 432, 430, 560);
        QTest::newRow("trayer, top, inside the work area") << Taskbar::Trayer << Edge::Top << QRect(850, 27, 430, 560);
        QTest::newRow("trayer, bottom") << Taskbar::Trayer << Edge::Bottom << QRect(850, 437, 430, 560);
    }

    void thePanelHangsAtTheIconWhereverTheTaskbarIs()
    {
        QFETCH(const Edge, edge);
        QFETCH(const QRect, place);
        QVERIFY(begin(edge));

        VirtualDisplay::click(icon());

        QCOMPARE(settled(&panel, std::optional(place)), std::optional(place));
    }

    void thePanelStaysInSightWhileScreensComeAndGo()
    {
        const std::optional place = QRect(850, 27, 430, 560);
        QVERIFY(begin(Taskbar::Trayer));
        setMonitor({u"--setmonitor"_s, u"left"_s, u"640/170x1024/270+0+0"_s, u"screen"_s});
        setMonitor({u"--setmonitor"_s, u"right"_s, u"640/170x1024/270+640+0"_s, u"none"_s});
        VirtualDisplay::click(icon());
        QCOMPARE(settled(&panel, place), place);

        setMonitor({u"--delmonitor"_s, u"right"_s});
        setMonitor({u"--delmonitor"_s, u"left"_s});
        VirtualDisplay::click(icon());
        QVERIFY(comesTrue([] { return !panel(); }));
        VirtualDisplay::click(icon());

        QCOMPARE(settled(&panel, place), place);
        endsQuietly();
    }

    void theIconComesWithATaskbarThatIsStartedLater_data() { addTaskbars(); }

    void theIconComesWithATaskbarThatIsStartedLater()
    {
        QFETCH(const Taskbar, taskbar);
        m_lapsa.emplace();
        QTRY_VERIFY_WITH_TIMEOUT(m_desktop->bus().hasOwner(u"org.lapsa.Lapsa"_s), desktopPatience);

        startTaskbar(*m_desktop, taskbar);

        QVERIFY(iconIsThere());
        QVERIFY(succeeds([this] { return openedByClick(); }));
    }

    void theIconMovesFromOneKindOfTrayToTheOther_data()
    {
        QTest::addColumn<Taskbar>("before");
        QTest::addColumn<Taskbar>("after");
        QTest::newRow("from embedded icons to items of Xfce") << Taskbar::Trayer << Taskbar::Xfce;
        QTest::newRow("from embedded icons to items of LXQt") << Taskbar::Trayer << Taskbar::Lxqt;
        QTest::newRow("from items to embedded icons") << Taskbar::Xfce << Taskbar::Trayer;
        QTest::newRow("from items to items of LXQt") << Taskbar::Xfce << Taskbar::Lxqt;
    }

    void theIconMovesFromOneKindOfTrayToTheOther()
    {
        QFETCH(const Taskbar, before);
        QFETCH(const Taskbar, after);
        QVERIFY(begin(before));

        m_desktop->killPanel();
        startTaskbar(*m_desktop, after);

        QVERIFY(iconIsThere());
        QVERIFY(succeeds([this] { return openedByClick(); }));
    }

    void theIconComesBackHoweverOftenTheTaskbarCrashes_data() { addTaskbars(); }

    void theIconComesBackHoweverOftenTheTaskbarCrashes()
    {
        constexpr int crashes = 3;
        QFETCH(const Taskbar, taskbar);
        QVERIFY(begin());

        for (int crash = 0; crash < crashes; ++crash) {
            m_desktop->killPanel();
            startTaskbar(*m_desktop, taskbar);
            QVERIFY(iconIsThere());
        }

        QVERIFY(succeeds([this] { return openedByClick(); }));
        endsQuietly();
    }

    void theIconGoesWithTheProgram()
    {
        QVERIFY(begin(Taskbar::Xfce));

        QCOMPARE(m_lapsa->terminate(), 0);

        QVERIFY(comesTrue([this] { return !m_desktop->trayIcon(); }));
    }

private:
    /// A desktop with the taskbar of the row, Lapsa in its tray.
    [[nodiscard]] bool begin(Edge edge = Edge::Top)
    {
        QFETCH(const Taskbar, taskbar);
        return begin(taskbar, edge);
    }

    [[nodiscard]] bool begin(Taskbar taskbar, Edge edge = Edge::Top)
    {
        startTaskbar(*m_desktop, taskbar, edge);
        m_lapsa.emplace();
        return iconIsThere();
    }

    /// Taskbars show an icon before they have laid themselves out, and once more when it moves from one kind to the
    /// other: it is there when it stays where it is.
    [[nodiscard]] bool iconIsThere() const
    {
        constexpr int enough = 3;
        std::optional<QRect> last;
        int seen = 0;
        return QTest::qWaitFor(
            [&] {
                const std::optional<QRect> now = m_desktop->trayIcon();
                seen = now && now == last ? seen + 1 : 0;
                last = now;
                return seen == enough;
            },
            desktopPatience);
    }

    [[nodiscard]] QPoint icon() const
    {
        std::optional<QRect> found;
        // Out of sight for a moment, as above; clicked where it is not, nothing opens, and the test says so.
        std::ignore = succeeds([&] { return found = m_desktop->trayIcon(); });
        return found.value_or(QRect()).center();
    }

    [[nodiscard]] static std::optional<QRect> panel() { return DesktopSession::lapsaPanel(); }

    static void clickQuickly(const QPoint& point) { VirtualDisplay::click(point); }

    void openMenu() const
    {
        QVERIFY(succeeds([this] { return menuOpenedByClick(); }));
    }

    /// One try: a menu goes by itself when a window that has only just come up takes the focus.
    [[nodiscard]] bool menuOpenedByClick() const
    {
        if (!m_desktop->menu()) {
            VirtualDisplay::click(icon(), Button::Right);
        }
        std::ignore = QTest::qWaitFor([this] { return m_desktop->menu().has_value(); }, 2000);
        return settledFor(500, [this] { return m_desktop->menu().has_value(); });
    }

    void closeMenu() const
    {
        VirtualDisplay::press(u"Escape"_s);
        QVERIFY(comesTrue([this] { return !m_desktop->menu(); }));
    }

    void endsQuietly()
    {
        QCOMPARE(m_lapsa->terminate(), 0);
        QCOMPARE(m_lapsa->standardError(), QByteArray());
    }

    static void setMonitor(const QStringList& arguments)
    {
        // It writes nothing.
        std::ignore = outputOf(u"xrandr"_s, arguments);
    }

    /// One try: a menu is seen a moment before it has the keyboard.
    [[nodiscard]] bool openedByShortcut() const
    {
        if (m_desktop->menu()) {
            VirtualDisplay::press(u"ctrl+comma"_s);
        }
        return preferencesAreOpen();
    }

    [[nodiscard]] bool endedByShortcut() const
    {
        if (m_desktop->menu()) {
            VirtualDisplay::press(u"ctrl+q"_s);
        }
        return !m_lapsa->running();
    }

    /// One try: the taskbar may still be laying itself out.
    [[nodiscard]] bool openedByClick() const
    {
        if (!panel() && m_desktop->trayIcon()) {
            VirtualDisplay::click(icon());
            std::ignore = QTest::qWaitFor([] { return panel().has_value(); }, 2000);
        }
        return panel().has_value();
    }

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::TrayDesktopTest)

#include "Tray_desktop_test.moc"
