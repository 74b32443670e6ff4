// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PanelWorld.h"
#include "RowIconButton.h"
#include "ThemePalette.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class RowIconButton_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void everyStateHasItsColours_data();
    void everyStateHasItsColours();
    void theGroundIsPaintedInTheColourOfTheState_data();
    void theGroundIsPaintedInTheColourOfTheState();
    void theButtonIsHitOverItsWholeSquare();
    void theSecondClickOfADoubleClickPressesNothing();
    void spaceAndReturnPressIt();
};

void RowIconButton_test::everyStateHasItsColours_data()
{
    QTest::addColumn<bool>("danger");
    QTest::addColumn<bool>("hovered");
    QTest::addColumn<ColorRole>("foreground");
    QTest::addColumn<ColorRole>("background");
    QTest::addColumn<double>("opacity");
    QTest::newRow("danger at rest") << true << false << ColorRole::Danger << ColorRole::Danger << 0.16;
    QTest::newRow("danger hovered") << true << true << ColorRole::Danger << ColorRole::Danger << 0.3;
    QTest::newRow("plain at rest") << false << false << ColorRole::Primary << ColorRole::Accent << 0.055;
    QTest::newRow("plain hovered") << false << true << ColorRole::Accent << ColorRole::Accent << 0.22;
}

void RowIconButton_test::everyStateHasItsColours()
{
    QFETCH(const bool, danger);
    QFETCH(const bool, hovered);
    QFETCH(const ColorRole, foreground);
    QFETCH(const ColorRole, background);
    QFETCH(const double, opacity);
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const QPalette palette = themePalette(scheme);

        const RowIconButton::Look look = RowIconButton::lookFor(danger, hovered, palette);

        QCOMPARE(look.foreground, themeColor(foreground, palette));
        QCOMPARE(look.background, withOpacity(themeColor(background, palette), opacity));
    }
}

void RowIconButton_test::theGroundIsPaintedInTheColourOfTheState_data()
{
    everyStateHasItsColours_data();
}

void RowIconButton_test::theGroundIsPaintedInTheColourOfTheState()
{
    QFETCH(const bool, danger);
    QFETCH(const bool, hovered);
    QFETCH(const ColorRole, background);
    QFETCH(const double, opacity);
    RowIconButton button(danger ? u"trash"_s : u"timer"_s, danger);
    button.show();
    QEnterEvent enter({15, 15}, {15, 15}, {15, 15});
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&button, hovered ? static_cast<QEvent*>(&enter) : &leave);

    QImage picture(button.size(), QImage::Format_ARGB32);
    picture.fill(Qt::white);
    button.render(&picture, {}, {}, QWidget::DrawChildren);

    const QColor wanted = blended(withOpacity(themeColor(background, button.palette()), opacity), Qt::white);
    const QColor found = picture.pixelColor(15, 2);
    QVERIFY(std::abs(found.red() - wanted.red()) <= 1);
    QVERIFY(std::abs(found.green() - wanted.green()) <= 1);
    QVERIFY(std::abs(found.blue() - wanted.blue()) <= 1);
    QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::white)); // outside the round corner
    QCOMPARE(button.size(), QSize(30, 30));
}

void RowIconButton_test::theButtonIsHitOverItsWholeSquare()
{
    RowIconButton button(u"xmark"_s, false);
    QSignalSpy clicks(&button, &RowIconButton::clicked);
    button.show();

    for (const QPoint& corner : {QPoint(0, 0), QPoint(29, 0), QPoint(0, 29), QPoint(29, 29)}) {
        QTest::mouseClick(&button, Qt::LeftButton, {}, corner);
    }

    QCOMPARE(clicks.count(), 4);
}

void RowIconButton_test::theSecondClickOfADoubleClickPressesNothing()
{
    RowIconButton button(u"trash"_s, true);
    QSignalSpy clicks(&button, &RowIconButton::clicked);
    button.show();

    QTest::mouseClick(&button, Qt::LeftButton);
    QTest::mouseDClick(&button, Qt::LeftButton);

    QCOMPARE(clicks.count(), 1);
}

void RowIconButton_test::spaceAndReturnPressIt()
{
    RowIconButton button(u"xmark"_s, false);
    QSignalSpy clicks(&button, &RowIconButton::clicked);
    button.show();

    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Delete);

    QCOMPARE(clicks.count(), 2);
}

QTEST_MAIN(RowIconButton_test)
#include "RowIconButton_test.moc"
