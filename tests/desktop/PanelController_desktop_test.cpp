// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopFacilities.h"
#include "FileChooser.h"
#include "HelperProcess.h"
#include "LapsaPanelView.h"
#include "Motion.h"
#include "PanelController.h"
#include "PanelWorld.h"
#include "PointerMonitor.h"
#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "SessionBus.h"
#include "SplashView.h"
#include "SplashWindowController.h"
#include "StoreWorld.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;
const QString otherProgram = u"other-program"_s;
constexpr QRect otherPlace(20, 700, 200, 200);
constexpr QPoint bareDesktop(400, 300);

/// The controller over the real store, its panel open and active.
class OpenPanel final : public StoreWorld
{
public:
    explicit OpenPanel(bool keepPanelOpen)
    {
        changeSettings([keepPanelOpen](LapsaSettings& settings) { settings.keepPanelOpen = keepPanelOpen; });
        button.place.reset();
        controller.show(&button);
        if (!QTest::qWaitForWindowActive(controller.popover(), patience)) {
            qFatal("the panel does not become active");
        }
    }

    [[nodiscard]] QWidget& panel() const { return *controller.popover(); }

    /// A click on the button.
    void toggle() { controller.toggle(&button, button.frame()); }

    RecordingIcons icons;
    /// Nobody knows where it is: the panel comes up in the corner.
    RecordingStatusButton button;
    RecordingFolderPicker folderPicker;
    std::unique_ptr<WindowSystem> windowSystem = makeWindowSystem();
    std::unique_ptr<PointerMonitor> pointer = makePointerMonitor();
    PanelController controller{{{store(), time, time, icons}, folderPicker, *windowSystem, *pointer}};
};

/// Lets a while pass in which something that must not happen could happen.
void letThingsSettle()
{
    QElapsedTimer elapsed;
    elapsed.start();
    QTRY_VERIFY(elapsed.elapsed() > 600);
}

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

/// On a real X server with a window manager, beside a window of another program.
class PanelControllerDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        // Only a window manager tells which window is active.
        QWidget probe;
        probe.show();
        QTRY_VERIFY_WITH_TIMEOUT(!outputOf(u"xdotool"_s, {u"getactivewindow"_s}).trimmed().isEmpty(), patience);
    }

    void thePanelBecomesActiveInItsCorner()
    {
        const OpenPanel world(true);

        QCOMPARE(world.panel().geometry(), QRect(850, 0, 430, 560));
    }

    void aClickOnAnotherProgramClosesATransientPanel()
    {
        const OpenPanel world(false);

        VirtualDisplay::click(otherPlace.center());

        QTRY_VERIFY_WITH_TIMEOUT(!world.panel().isVisible(), patience);
    }

    void aClickOnTheBareDesktopClosesATransientPanel()
    {
        const OpenPanel world(false);

        VirtualDisplay::click(bareDesktop);

        QTRY_VERIFY_WITH_TIMEOUT(!world.panel().isVisible(), patience);
    }

    void theReleaseOfAnEarlierClickClosesNoPanel()
    {
        OpenPanel world(false);
        VirtualDisplay::click(bareDesktop);
        QTRY_VERIFY_WITH_TIMEOUT(!world.panel().isVisible(), patience);

        // As from a taskbar that reports a click when the button goes down.
        std::ignore = outputOf(u"xdotool"_s, {u"mousedown"_s, u"1"_s});
        world.controller.show(&world.button);
        QTRY_VERIFY_WITH_TIMEOUT(world.panel().isVisible(), patience);
        std::ignore = outputOf(u"xdotool"_s, {u"mouseup"_s, u"1"_s});
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void aClickOnTheBareDesktopLeavesAPanelThatIsKeptOpen()
    {
        const OpenPanel world(true);

        VirtualDisplay::click(bareDesktop);
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void aClickIntoThePanelLeavesIt()
    {
        const OpenPanel world(false);

        VirtualDisplay::click(world.panel().geometry().center());
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void aClickOnAnotherProgramLeavesAPanelThatIsKeptOpen()
    {
        const OpenPanel world(true);

        VirtualDisplay::click(otherPlace.center());
        QTRY_VERIFY_WITH_TIMEOUT(QGuiApplication::focusWindow() == nullptr, patience);
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void theSettingSwitchedOnHoldsFromTheNextOpening()
    {
        OpenPanel world(false);
        world.changeSettings([](LapsaSettings& settings) { settings.keepPanelOpen = true; });
        VirtualDisplay::click(otherPlace.center());
        QTRY_VERIFY_WITH_TIMEOUT(!world.panel().isVisible(), patience);

        world.controller.show(&world.button);
        QVERIFY(QTest::qWaitForWindowActive(&world.panel(), patience));
        VirtualDisplay::click(otherPlace.center());
        QTRY_VERIFY_WITH_TIMEOUT(QGuiApplication::focusWindow() == nullptr, patience);
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void aClickInsideATransientPanelLeavesItOpen()
    {
        const OpenPanel world(false);

        VirtualDisplay::click(world.panel().geometry().center());
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void aMenuOfThePanelDoesNotCloseIt()
    {
        const OpenPanel world(false);
        QMenu menu(&world.panel());
        menu.addAction(u"Open"_s);

        menu.popup(world.panel().mapToGlobal(QPoint(50, 300)));
        QVERIFY(QTest::qWaitForWindowExposed(&menu, patience));
        letThingsSettle();
        QVERIFY(world.panel().isVisible());
        menu.close();
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void theChooserOfThePanelDoesNotCloseIt()
    {
        const OpenPanel world(false);
        auto& panel = static_cast<LapsaPanelView&>(world.controller.popover()->content());

        VirtualDisplay::click(world.panel().mapToGlobal(QPoint(215, 150)));
        QTRY_VERIFY_WITH_TIMEOUT(panel.chooser() != nullptr && panel.chooser()->isActiveWindow(), patience);
        letThingsSettle();
        QVERIFY(world.panel().isVisible());
        QTest::keyClick(panel.chooser(), Qt::Key_Escape);
        QTRY_VERIFY_WITH_TIMEOUT(panel.chooser() == nullptr, patience);
        QTRY_VERIFY_WITH_TIMEOUT(world.panel().isActiveWindow(), patience);
        letThingsSettle();

        QVERIFY(world.panel().isVisible());
    }

    void thePreferencesTakeOverFromATransientPanel()
    {
        OpenPanel world(false);

        world.controller.showPreferences();

        QTRY_VERIFY_WITH_TIMEOUT(world.controller.preferencesWindow()->isActiveWindow(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!world.panel().isVisible(), patience);
    }

    void aClosedPanelComesBackActive()
    {
        OpenPanel world(true);
        world.toggle();
        QVERIFY(!world.panel().isVisible());

        world.toggle();

        QVERIFY(QTest::qWaitForWindowActive(&world.panel(), patience));
    }

    void thePreferencesStandInTheMiddleOfTheScreen()
    {
        OpenPanel world(false);
        world.controller.showPreferences();
        const QWidget& window = *world.controller.preferencesWindow();
        QVERIFY(QTest::qWaitForWindowActive(world.controller.preferencesWindow(), patience));

        QCOMPARE(window.size(), QSize(620, 620));
        const QPoint off = window.frameGeometry().center() - QRect(0, 0, 1280, 1024).center();
        QVERIFY(qAbs(off.x()) <= 20 && qAbs(off.y()) <= 20);
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

namespace {

/// A plain window, as another program would show it.
int showOtherProgram(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setGeometry(otherPlace);
    window.show();
    return QApplication::exec();
}

int run(int argc, char** argv)
{
    const TemporaryHome home;
    const SessionBus bus;
    const VirtualDisplay display;
    const WindowManager windowManager;
    const HelperProcess other(QString::fromLocal8Bit(argv[0]), {otherProgram});
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    PanelControllerDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

} // namespace

} // namespace lapsa::test

int main(int argc, char** argv)
{
    const bool other = argc > 1 && QString::fromLocal8Bit(argv[1]) == lapsa::test::otherProgram;
    return other ? lapsa::test::showOtherProgram(argc, argv) : lapsa::test::run(argc, argv);
}

#include "PanelController_desktop_test.moc"
