// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaStyle.h"
#include "Material.h"
#include "PopoverWindow.h"
#include "RecordingDesktop.h"

#include <QApplication>
#include <QImage>
#include <QTest>

namespace lapsa::test {

namespace {

constexpr QRect workArea(0, 0, 800, 800);
constexpr QRect place(200, 100, 430, 560);

} // namespace

/// The shadow of the popover, where a compositing manager shows one.
class PopoverWindowTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { QApplication::setStyle(new LapsaStyle); }

    void cleanup() { material::setTranslucencyAvailable(false); }

    void theShadowTakesItsRoomOnThreeSides()
    {
        PopoverWindow window({m_windowSystem, m_pointer}, new QWidget);
        material::setTranslucencyAvailable(true);

        window.present({.rect = place, .side = PopoverPlacement::Side::BelowIcon}, workArea);

        // Six pixels lower than the popover, and nothing towards the icon.
        QCOMPARE(window.size(), QSize(24 + 430 + 24, 560 + 30));
        QCOMPARE(window.content().geometry(), QRect(24, 0, 430, 560));
    }

    void theShadowIsWholeWhereTheCompositorDecidesOnThePlace()
    {
        PlainWindowSystem windowSystem;
        windowSystem.placesHonoured = false;
        PopoverWindow window({windowSystem, m_pointer}, new QWidget);
        material::setTranslucencyAvailable(true);

        window.present({.rect = QRect(370, 0, 430, 560), .side = PopoverPlacement::Side::BelowIcon}, workArea);

        QCOMPARE(window.size(), QSize(24 + 430 + 24, 18 + 560 + 30));
        QCOMPARE(window.content().geometry(), QRect(24, 18, 430, 560));
    }

    void theContentIsAsSmallAsItsPlace()
    {
        auto* const content = new QWidget;
        content->setFixedSize(430, 560);
        PopoverWindow window({m_windowSystem, m_pointer}, content);

        window.present({.rect = QRect(place.topLeft(), QSize(430, 500)), .side = PopoverPlacement::Side::BelowIcon},
                       workArea);

        QCOMPARE(content->size(), QSize(430, 500));
        QCOMPARE(window.size(), QSize(430, 500));
    }

    void theShadowFallsOffWithTheSquareOfTheDistance()
    {
        PopoverWindow window({m_windowSystem, m_pointer}, new QWidget);
        material::setTranslucencyAvailable(true);
        window.present({.rect = place, .side = PopoverPlacement::Side::BelowIcon}, workArea);

        const QImage image = window.grab().toImage();

        const auto shade = [&](int distance) { return image.pixelColor(24 + 215, 560 + distance).alpha(); };
        // At most a little darker than the hairline of a light panel on white, so that this is no pale seam.
        QVERIFY2(shade(0) > 28 && shade(0) < 38, QByteArray::number(shade(0)));
        // Halfway out a quarter is left: a straight ramp has half of it there.
        QVERIFY2(shade(15) >= 6 && shade(15) <= 11, QByteArray::number(shade(15)));
        QVERIFY2(shade(29) <= 1, QByteArray::number(shade(29)));
        const int side = image.pixelColor(23, 300).alpha();
        QVERIFY2(side > 0 && side < shade(0), QByteArray::number(side));
    }

    void withoutCompositingThereIsNoShadow()
    {
        PopoverWindow window({m_windowSystem, m_pointer}, new QWidget);

        window.present({.rect = place, .side = PopoverPlacement::Side::BelowIcon}, workArea);

        QCOMPARE(window.geometry(), place);
    }

    void aShownPopoverGetsItsShadowWhenCompositingBegins()
    {
        PopoverWindow window({m_windowSystem, m_pointer}, new QWidget);
        window.present({.rect = place, .side = PopoverPlacement::Side::BelowIcon}, workArea);
        const WId native = window.winId();

        material::setTranslucencyAvailable(true);
        window.adaptToCompositing();

        QCOMPARE(window.size(), QSize(24 + 430 + 24, 560 + 30));
        QCOMPARE(window.pos() + window.content().pos(), place.topLeft());
        QCOMPARE(window.winId(), native); // a new one would lose the focus, and its dialogs
    }

    void aShownPopoverLosesItsShadowWhenCompositingEnds()
    {
        material::setTranslucencyAvailable(true);
        PopoverWindow window({m_windowSystem, m_pointer}, new QWidget);
        window.present({.rect = place, .side = PopoverPlacement::Side::BelowIcon}, workArea);

        material::setTranslucencyAvailable(false);
        window.adaptToCompositing();

        QCOMPARE(window.geometry(), place);
        QCOMPARE(window.content().geometry(), QRect(QPoint(), place.size()));
        QCOMPARE(window.windowOpacity(), 1.0);
    }

private:
    PlainWindowSystem m_windowSystem;
    PlayedPointer m_pointer;
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PopoverWindowTest)
#include "PopoverWindow_test.moc"
