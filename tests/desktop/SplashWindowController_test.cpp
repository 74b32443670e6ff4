// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecordingDesktop.h"
#include "SplashView.h"
#include "SplashWindowController.h"
#include "TemporaryHome.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QPointer>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

/// The picture is opaque, its shadow faint.
constexpr int softest = 60;
const QColor ground = QColor::fromRgbF(0.02F, 0.03F, 0.08F);

QPointer<QWidget> shownSplash()
{
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (qobject_cast<SplashView*>(window) != nullptr) {
            return window;
        }
    }
    return nullptr;
}

QImage picture(const QString& folder, bool translucent = true)
{
    SplashView view(folder);
    view.setTranslucent(translucent);
    return view.grab(view.contentsRect()).toImage();
}

/// How many pixels of an area differ from the ground.
int drawnPixels(const QImage& image, const QRect& area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            count += image.pixel(x, y) == ground.rgb() ? 0 : 1;
        }
    }
    return count;
}

} // namespace

class SplashWindowControllerTest final : public QObject
{
    Q_OBJECT

private slots:

    void cleanup() { QTRY_VERIFY(shownSplash() == nullptr); }

    void theWindowIs500PointsWideAndHighInTheMiddleOfTheScreen()
    {
        SplashWindowController::showSplash(50ms, PlainWindowSystem());

        const QPointer<QWidget> splash = shownSplash();
        QVERIFY(splash != nullptr && splash->isVisible());
        QCOMPARE(splash->size(), QSize(500, 500));
        QCOMPARE(splash->geometry().center(), QGuiApplication::primaryScreen()->geometry().center());
        QVERIFY(splash->windowFlags().testFlag(Qt::FramelessWindowHint));
        QVERIFY(splash->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void itEndsByItselfAndLeavesNothing()
    {
        SplashWindowController::showSplash(20ms, PlainWindowSystem());
        const QPointer<QWidget> splash = shownSplash();

        QTRY_VERIFY(splash == nullptr);
    }

    void itStaysForTheWholeDuration()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        SplashWindowController::showSplash(300ms, PlainWindowSystem());

        QTRY_VERIFY(shownSplash() == nullptr);

        QVERIFY(elapsed.elapsed() >= 300);
    }

    void aDurationOfNothingEndsItToo()
    {
        SplashWindowController::showSplash(0ms, PlainWindowSystem());

        QTRY_VERIFY(shownSplash() == nullptr);
    }

    void aShadowLiesAroundThePictureWhereSomethingCanShineThrough()
    {
        SplashView view;
        view.setTranslucent(true);
        const QImage image = view.grab().toImage();
        const QRect ground = view.contentsRect();
        const auto shade = [&](const QPoint& point) { return image.pixelColor(point).alpha(); };

        QCOMPARE(ground.size(), QSize(500, 500));
        const QPoint below(ground.center().x(), ground.bottom() + 1);
        const QPoint above(ground.center().x(), ground.top() - 1);
        QVERIFY(shade(below) > shade(above) && shade(above) > 0);
        // With the square of the distance: halfway out, a quarter is left.
        QVERIFY(shade(below + QPoint(0, 18)) < shade(below) / 3);
        QCOMPARE(shade({below.x(), image.height() - 1}), 0);
        QCOMPARE(shade({0, 0}), 0);
        QCOMPARE(image.pixelColor(below + QPoint(0, 4)).rgb() & 0xffffffU, 0U);
    }

    void withoutTranslucencyThereIsNoShadow()
    {
        SplashView view;
        view.setTranslucent(false);

        QCOMPARE(view.size(), QSize(500, 500));
        QCOMPARE(view.contentsRect(), QRect(0, 0, 500, 500));
    }

    void thePictureFillsTheRoundedShape()
    {
        const QImage image = picture(SplashView::defaultPictures());

        QVERIFY(image.pixelColor(0, 0).alpha() < softest);
        QVERIFY(image.pixelColor(499, 499).alpha() < softest);
        // 36 points of radius: the shape reaches the edge where the corner ends.
        QCOMPARE(image.pixelColor(36, 0).alpha(), 255);
        QCOMPARE(image.pixelColor(0, 250).alpha(), 255);
        // On the diagonal the edge lies 36 x (1 - 1/sqrt 2) = 10.5 points inside.
        QVERIFY(image.pixelColor(8, 8).alpha() < softest);
        QCOMPARE(image.pixelColor(13, 13).alpha(), 255);
        QVERIFY(drawnPixels(image, QRect(200, 150, 100, 130)) > 5000);
    }

    void whereNothingShinesThroughTheCornersAreDark()
    {
        const QImage image = picture(SplashView::defaultPictures(), false);

        QCOMPARE(image.pixelColor(1, 1).alpha(), 255);
        QVERIFY(image.pixelColor(1, 1) != QColor(Qt::black));
    }

    void withoutADrawingAPhotographIsShown()
    {
        const TemporaryHome home;
        QImage photograph(250, 250, QImage::Format_RGB32);
        photograph.fill(Qt::red);
        photograph.save(home.path(u"LapsaSplash.png"_s));

        const QImage image = picture(home.path({}));

        QCOMPARE(image.pixelColor(250, 250), QColor(Qt::red));
        QCOMPARE(image.pixelColor(495, 250), QColor(Qt::red));
        QVERIFY(image.pixelColor(2, 2).alpha() < softest);
    }

    void withoutAPictureTheLogoAndTheNameAreShown()
    {
        const TemporaryHome home;
        QVERIFY(QFile::copy(u":/lapsa/LapsaLogo.svg"_s, home.path(u"LapsaLogo.svg"_s)));

        const QImage image = picture(home.path({}));

        QCOMPARE(image.pixelColor(250, 10).rgb(), ground.rgb());
        QVERIFY(drawnPixels(image, QRect(160, 130, 180, 180)) > 20'000);
        QVERIFY(drawnPixels(image, QRect(160, 318, 180, 70)) > 300);
    }

    void withoutTheLogoItsPlaceAboveTheNameStaysEmpty()
    {
        const TemporaryHome home;

        const QImage image = picture(home.path({}));

        QCOMPARE(drawnPixels(image, QRect(160, 100, 180, 200)), 0);
        QVERIFY(drawnPixels(image, QRect(160, 318, 180, 70)) > 300);
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::SplashWindowControllerTest)
#include "SplashWindowController_test.moc"
