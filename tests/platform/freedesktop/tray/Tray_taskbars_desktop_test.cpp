// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Settling.h"
#include "TrayFixture.h"

#include <QTest>

#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The icon and the panel wherever the taskbar is, and while taskbars and screens come and go.
class TrayTaskbarsDesktopTest final : public TrayFixture
{
    Q_OBJECT

private slots:

    void init() { prepare(); }

    void cleanup() { end(); }

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

        startTaskbar(taskbar);

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
        startTaskbar(after);

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
            startTaskbar(taskbar);
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
    static void setMonitor(const QStringList& arguments)
    {
        // It writes nothing.
        std::ignore = outputOf(u"xrandr"_s, arguments);
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
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::TrayTaskbarsDesktopTest)

#include "Tray_taskbars_desktop_test.moc"
