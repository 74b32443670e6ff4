// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BesideOtherProgram.h"
#include "DesktopFacilities.h"
#include "Motion.h"
#include "PanelWorld.h"
#include "SplashView.h"
#include "SplashWindowController.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

SplashView* shownSplash()
{
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const splash = qobject_cast<SplashView*>(window)) {
            return splash;
        }
    }
    return nullptr;
}

} // namespace

/// The splash on a real X server with a window manager, beside a window of another program.
class SplashWindowControllerDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        waitForWindowManager();
    }

    void theSplashFadesInStaysAndFadesOut()
    {
        motion::setAllowedByDesktop(true);
        QElapsedTimer elapsed;
        elapsed.start();
        SplashWindowController::showSplash(700ms, *makeWindowSystem());
        const QPointer<SplashView> splash = shownSplash();
        QVERIFY(splash != nullptr);
        QVERIFY(splash->windowOpacity() < 0.1);

        QTRY_COMPARE(splash->windowOpacity(), 1.0);
        QVERIFY(elapsed.elapsed() >= 200);
        QTRY_VERIFY(splash->windowOpacity() < 1.0);
        QVERIFY(elapsed.elapsed() >= 690);
        QTRY_VERIFY(splash == nullptr);
        QVERIFY(elapsed.elapsed() >= 970);
    }

    void aClickElsewhereDoesNotEndTheSplashEarly_data()
    {
        QTest::addColumn<QPoint>("place");
        QTest::newRow("on another program") << otherPlace.center();
        QTest::newRow("on the bare desktop") << QPoint(60, 60);
    }

    void aClickElsewhereDoesNotEndTheSplashEarly()
    {
        QFETCH(const QPoint, place);
        constexpr auto longerThanTheTest = 600s;
        SplashWindowController::showSplash(longerThanTheTest, *makeWindowSystem());
        const QPointer<SplashView> splash = shownSplash();
        QVERIFY(splash != nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(splash->windowOpacity(), 1.0, patience);

        VirtualDisplay::click(place);
        letThingsSettle();

        QVERIFY(splash != nullptr && splash->isVisible());
        QCOMPARE(splash->windowOpacity(), 1.0);
        delete splash;
    }

    void aSplashShorterThanItsFadeInStillEnds()
    {
        motion::setAllowedByDesktop(true);
        SplashWindowController::showSplash(60ms, *makeWindowSystem());

        const auto splashes = [] {
            return std::ranges::count_if(QApplication::topLevelWidgets(), [](const QWidget* window) {
                return qobject_cast<const SplashView*>(window) != nullptr;
            });
        };
        QCOMPARE(splashes(), 1);
        QTRY_COMPARE(splashes(), 0);
    }
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runBesideOtherProgram<lapsa::test::SplashWindowControllerDesktopTest>(argc, argv);
}

#include "SplashWindowController_desktop_test.moc"
