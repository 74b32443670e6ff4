// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PopoverPlacement.h"

#include <QTest>

#include <optional>

namespace lapsa::test {

namespace {

constexpr QSize panel(430, 560);
/// Full HD with a taskbar of 30 pixels at the top.
constexpr QRect screen(0, 0, 1920, 1080);
constexpr QRect workArea(0, 30, 1920, 1050);

using Side = PopoverPlacement::Side;

} // namespace

} // namespace lapsa::test

Q_DECLARE_METATYPE(lapsa::PopoverPlacement::Side)

namespace lapsa::test {

class PopoverPlacementTest final : public QObject
{
    Q_OBJECT

private slots:

    void itHangsUnderItsIconOrStandsOverIt_data()
    {
        QTest::addColumn<QRect>("icon");
        QTest::addColumn<QPoint>("corner");
        QTest::addColumn<Side>("side");
        QTest::newRow("an icon in the taskbar above") << QRect(1000, 3, 24, 24) << QPoint(797, 30) << Side::BelowIcon;
        QTest::newRow("an icon inside the work area") << QRect(1000, 40, 24, 24) << QPoint(797, 64) << Side::BelowIcon;
        QTest::newRow("an icon at the right end") << QRect(1890, 3, 24, 24) << QPoint(1490, 30) << Side::BelowIcon;
        QTest::newRow("an icon at the left end") << QRect(2, 3, 24, 24) << QPoint(0, 30) << Side::BelowIcon;
        QTest::newRow("an icon at the bottom") << QRect(1000, 1050, 24, 24) << QPoint(797, 490) << Side::AboveIcon;
        QTest::newRow("an icon below the work area")
            << QRect(1000, 1085, 24, 24) << QPoint(797, 520) << Side::AboveIcon;
        QTest::newRow("the point of a click") << QRect(600, 12, 1, 1) << QPoint(385, 30) << Side::BelowIcon;
        QTest::newRow("an icon just above the middle")
            << QRect(1000, 530, 24, 24) << QPoint(797, 520) << Side::BelowIcon;
    }

    void itHangsUnderItsIconOrStandsOverIt()
    {
        QFETCH(const QRect, icon);
        QFETCH(const QPoint, corner);
        QFETCH(const Side, side);

        const PopoverPlacement placement = popoverPlacement(icon, workArea, screen, panel);

        QCOMPARE(placement.rect, QRect(corner, panel));
        QCOMPARE(placement.side, side);
        QVERIFY(workArea.contains(placement.rect));
    }

    void besideABarAlongTheEdgeItIsCentredOnItsIcon_data()
    {
        QTest::addColumn<QRect>("icon");
        QTest::addColumn<QPoint>("corner");
        QTest::addColumn<Side>("side");
        QTest::newRow("left") << QRect(4, 500, 24, 24) << QPoint(40, 232) << Side::RightOfIcon;
        QTest::newRow("left, at the lower end") << QRect(4, 1040, 24, 24) << QPoint(40, 520) << Side::RightOfIcon;
        QTest::newRow("right") << QRect(1892, 500, 24, 24) << QPoint(1450, 232) << Side::LeftOfIcon;
        QTest::newRow("right, at the upper end") << QRect(1892, 4, 24, 24) << QPoint(1450, 0) << Side::LeftOfIcon;
    }

    void besideABarAlongTheEdgeItIsCentredOnItsIcon()
    {
        QFETCH(const QRect, icon);
        QFETCH(const QPoint, corner);
        QFETCH(const Side, side);
        // Taskbars of 40 pixels at both edges.
        const QRect between(40, 0, 1840, 1080);

        const PopoverPlacement placement = popoverPlacement(icon, between, screen, panel);

        QCOMPARE(placement.rect, QRect(corner, panel));
        QCOMPARE(placement.side, side);
    }

    void withoutAnIconItOpensInTheCornerOfTheTray_data()
    {
        QTest::addColumn<QRect>("workArea");
        QTest::addColumn<QPoint>("corner");
        QTest::addColumn<Side>("side");
        QTest::newRow("taskbar at the top") << workArea << QPoint(1490, 30) << Side::BelowIcon;
        QTest::newRow("no taskbar") << screen << QPoint(1490, 0) << Side::BelowIcon;
        QTest::newRow("at the bottom") << QRect(0, 0, 1920, 1040) << QPoint(1490, 480) << Side::AboveIcon;
        QTest::newRow("at the left edge") << QRect(40, 0, 1880, 1080) << QPoint(40, 520) << Side::RightOfIcon;
        QTest::newRow("at the right edge") << QRect(0, 0, 1880, 1080) << QPoint(1450, 520) << Side::LeftOfIcon;
        QTest::newRow("a menu bar above, a larger taskbar below")
            << QRect(0, 24, 1920, 1016) << QPoint(1490, 480) << Side::AboveIcon;
        QTest::newRow("two alike, above and below") << QRect(0, 28, 1920, 1024) << QPoint(1490, 28) << Side::BelowIcon;
    }

    void withoutAnIconItOpensInTheCornerOfTheTray()
    {
        QFETCH(const QRect, workArea);
        QFETCH(const QPoint, corner);
        QFETCH(const Side, side);

        const PopoverPlacement placement = popoverPlacement(std::nullopt, workArea, screen, panel);

        QCOMPARE(placement.rect, QRect(corner, panel));
        QCOMPARE(placement.side, side);
    }

    void theCornerOfAScreenLeftOfTheFirst()
    {
        constexpr QRect left(-1600, -200, 1600, 900);
        constexpr QRect aboveItsTaskbar(-1600, -200, 1600, 860);

        const PopoverPlacement placement = popoverPlacement(std::nullopt, aboveItsTaskbar, left, panel);

        QCOMPARE(placement.rect, QRect(QPoint(-430, 100), panel));
    }

    void onAScreenToTheLeftItStaysThere()
    {
        const QRect left(-1280, 0, 1280, 1024);

        const PopoverPlacement placement = popoverPlacement(QRect(-30, 1000, 24, 24), left, left, panel);

        QCOMPARE(placement.rect, QRect(QPoint(-430, 440), panel));
        QCOMPARE(placement.side, Side::AboveIcon);
    }

    void whereThereIsTooLittleRoomItIsSmaller_data()
    {
        QTest::addColumn<QRect>("area");
        QTest::addColumn<QRect>("rect");
        QTest::newRow("too low") << QRect(0, 24, 900, 500) << QRect(0, 24, 430, 500);
        QTest::newRow("too low and too narrow") << QRect(0, 24, 400, 300) << QRect(0, 24, 400, 300);
    }

    void whereThereIsTooLittleRoomItIsSmaller()
    {
        QFETCH(const QRect, area);
        QFETCH(const QRect, rect);

        QCOMPARE(popoverPlacement(QRect(100, 0, 24, 24), area, area, panel).rect, rect);
    }

    void anotherWindowNeverLiesUnderItWhereThereIsRoom_data()
    {
        QTest::addColumn<QRect>("wanted");
        QTest::addColumn<QRect>("popover");
        QTest::addColumn<QPoint>("corner");
        const QPoint middle(645, 240);
        QTest::newRow("far from it") << QRect(middle, QSize(630, 630)) << QRect(1490, 30, 430, 560) << middle;
        QTest::newRow("just beside it") << QRect(860, 240, 630, 630) << QRect(1490, 30, 430, 560) << QPoint(860, 240);
        QTest::newRow("under one at the right")
            << QRect(middle, QSize(630, 630)) << QRect(1200, 30, 430, 560) << QPoint(554, 240);
        QTest::newRow("under one at the left")
            << QRect(middle, QSize(630, 630)) << QRect(300, 30, 430, 560) << QPoint(746, 240);
        QTest::newRow("under one in the middle, nearer to the left")
            << QRect(600, 240, 630, 630) << QRect(745, 30, 430, 560) << QPoint(99, 240);
        QTest::newRow("no room at the left")
            << QRect(100, 240, 630, 630) << QRect(400, 30, 430, 560) << QPoint(846, 240);
        QTest::newRow("room at the left, but not for a gap")
            << QRect(middle, QSize(630, 630)) << QRect(640, 30, 430, 560) << QPoint(1086, 240);
        QTest::newRow("just room at the left")
            << QRect(300, 240, 630, 630) << QRect(640, 30, 430, 560) << QPoint(0, 240);
    }

    void anotherWindowNeverLiesUnderItWhereThereIsRoom()
    {
        QFETCH(const QRect, wanted);
        QFETCH(const QRect, popover);
        QFETCH(const QPoint, corner);

        const QRect place = besidePopover(wanted, popover, workArea);

        QCOMPARE(place, QRect(corner, wanted.size()));
        QVERIFY(!place.intersects(popover));
    }

    void whereThereIsTooLittleRoomTheyOverlapAsLittleAsPossible_data()
    {
        QTest::addColumn<QRect>("popover");
        QTest::addColumn<int>("x");
        QTest::newRow("at the right") << QRect(594, 0, 430, 560) << 0;
        QTest::newRow("at the left") << QRect(0, 0, 430, 560) << 394;
        QTest::newRow("right of the middle") << QRect(300, 0, 430, 560) << 0;
        QTest::newRow("left of the middle") << QRect(290, 0, 430, 560) << 394;
    }

    void whereThereIsTooLittleRoomTheyOverlapAsLittleAsPossible()
    {
        QFETCH(const QRect, popover);
        QFETCH(const int, x);

        const QRect place = besidePopover(QRect(197, 60, 630, 650), popover, QRect(0, 0, 1024, 768));

        QCOMPARE(place, QRect(x, 60, 630, 650));
    }
};

} // namespace lapsa::test

QTEST_APPLESS_MAIN(lapsa::test::PopoverPlacementTest)
#include "PopoverPlacement_test.moc"
