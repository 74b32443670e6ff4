// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Settling.h"

#include <QTest>

#include <cstdlib>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr QRect screen(0, 0, 1280, 1024);

} // namespace

} // namespace lapsa::test

Q_DECLARE_METATYPE(lapsa::test::Edge)

namespace lapsa::test {

/// Where the panel opens before the icon was clicked for the first time: the taskbar has not told where the icon is.
class PanelCornerDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void aSecondStartOpensThePanelBesideTheTray_data()
    {
        QTest::addColumn<Edge>("edge");
        QTest::newRow("top") << Edge::Top;
        QTest::newRow("bottom") << Edge::Bottom;
        QTest::newRow("left") << Edge::Left;
        QTest::newRow("right") << Edge::Right;
    }

    void aSecondStartOpensThePanelBesideTheTray()
    {
        QFETCH(const Edge, edge);
        DesktopSession desktop;
        desktop.startXfceTaskbar(edge);
        const LapsaProcess lapsa;
        QVERIFY(comesTrue([&desktop] { return desktop.trayIcon(); }));

        LapsaProcess second;
        QCOMPARE(second.exitCode(), 0);

        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        const QRect panel = *DesktopSession::lapsaPanel();
        const QRect icon = *desktop.trayIcon();
        QVERIFY(screen.contains(panel));
        QVERIFY(!panel.intersects(icon));
        // In the same half of the screen, and right beside the taskbar, which may have a border.
        constexpr int border = 16;
        const bool upright = edge == Edge::Left || edge == Edge::Right;
        const int distance = edge == Edge::Top      ? panel.top() - icon.bottom()
                             : edge == Edge::Bottom ? icon.top() - panel.bottom()
                             : edge == Edge::Left   ? panel.left() - icon.right()
                                                    : icon.left() - panel.right();
        QVERIFY2(distance > 0 && distance <= border, qPrintable(QString::number(distance)));
        QVERIFY(upright ? std::abs(panel.bottom() - screen.bottom()) <= border
                        : std::abs(panel.right() - screen.right()) <= border);
    }

    void aLargePanelCoversNoLineOfTheTaskbar_data()
    {
        QTest::addColumn<int>("height");
        for (int height = 868; height < 874; ++height) {
            QTest::addRow("%d", height) << height;
        }
    }

    void aLargePanelCoversNoLineOfTheTaskbar()
    {
        QFETCH(const int, height);
        DesktopSession desktop(u"1280x%1x24"_s.arg(height));
        desktop.startXfceTaskbar(Edge::Bottom);
        qputenv("QT_SCALE_FACTOR", "1.586");
        const LapsaProcess lapsa;
        QVERIFY(comesTrue([&desktop] { return desktop.trayIcon(); }));

        LapsaProcess second;
        QCOMPARE(second.exitCode(), 0);
        qunsetenv("QT_SCALE_FACTOR");

        constexpr int taskbar = 29; // with the line along its edge
        std::optional<QRect> panel;
        QVERIFY(comesTrue([&panel] {
            panel = VirtualDisplay::windowOfClass(u"lapsa"_s);
            return panel && panel->height() > 800;
        }));
        QCOMPARE_LE(panel->y() + panel->height(), height - taskbar);
        QCOMPARE_GE(panel->y(), 0);
    }

    void aTaskbarThatComesWhileThePanelIsOpenCoversNoneOfIt()
    {
        DesktopSession desktop(u"1280x620x24"_s);
        const LapsaProcess lapsa;
        QVERIFY(comesTrue([&desktop] { return desktop.bus().hasOwner(u"org.lapsa.Lapsa"_s); }));
        LapsaProcess second;
        QCOMPARE(second.exitCode(), 0);
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
        QCOMPARE(DesktopSession::lapsaPanel()->top(), 0);

        desktop.startXfceTaskbar();

        QVERIFY(comesTrue([&desktop] {
            const std::optional<QRect> icon = desktop.trayIcon();
            const std::optional<QRect> panel = DesktopSession::lapsaPanel();
            return icon && panel && panel->top() > icon->bottom();
        }));
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::PanelCornerDesktopTest)
#include "PanelCorner_desktop_test.moc"
