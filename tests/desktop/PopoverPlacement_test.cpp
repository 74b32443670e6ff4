// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PopoverPlacement.h"

#include <QTest>

#include <optional>

namespace lapsa::test {

namespace {

constexpr QSize panel(430, 560);
/// Full HD with a bar of 30 pixels at the top.
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
        QTest::newRow("an icon in the bar above") << QRect(1000, 3, 24, 24) << QPoint(797, 30) << Side::BelowIcon;
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

        const PopoverPlacement placement = popoverPlacement(icon, workArea, panel);

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
        // Bars of 40 pixels at both edges.
        const QRect between(40, 0, 1840, 1080);

        const PopoverPlacement placement = popoverPlacement(icon, between, panel);

        QCOMPARE(placement.rect, QRect(corner, panel));
        QCOMPARE(placement.side, side);
    }

    void withoutAnIconItComesUpInTheTopRightCorner()
    {
        const PopoverPlacement placement = popoverPlacement(std::nullopt, workArea, panel);

        QCOMPARE(placement.rect, QRect(QPoint(1490, 30), panel));
    }

    void onAScreenToTheLeftItStaysThere()
    {
        const QRect left(-1280, 0, 1280, 1024);

        const PopoverPlacement placement = popoverPlacement(QRect(-30, 1000, 24, 24), left, panel);

        QCOMPARE(placement.rect, QRect(QPoint(-430, 440), panel));
        QCOMPARE(placement.side, Side::AboveIcon);
    }

    void whereThereIsTooLittleRoomItsTopLeftCornerIsInSight()
    {
        const PopoverPlacement placement = popoverPlacement(QRect(100, 0, 24, 24), QRect(0, 24, 400, 300), panel);

        QCOMPARE(placement.rect.topLeft(), QPoint(0, 24));
    }
};

} // namespace lapsa::test

QTEST_APPLESS_MAIN(lapsa::test::PopoverPlacementTest)
#include "PopoverPlacement_test.moc"
