// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BesideOtherProgram.h"
#include "DesktopFacilities.h"
#include "FileChooser.h"
#include "LapsaPanelView.h"
#include "PanelController.h"
#include "PanelWorld.h"
#include "PointerMonitor.h"
#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "StoreWorld.h"
#include "VirtualDisplay.h"
#include "WindowSystem.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

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
    PanelController controller{{{store(), time, time, icons, kinds, store()}, folderPicker, *windowSystem, *pointer}};
};

} // namespace

/// On a real X server with a window manager, beside a window of another program.
class PanelControllerDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        waitForWindowManager();
    }

    void thePanelBecomesActiveInItsCorner()
    {
        const OpenPanel world(true);

        QCOMPARE(world.panel().geometry(), QRect(850, 0, 430, 560));
    }

    void aWindowManagerThatPutsWindowsInTheMiddleIsKnownByItsName()
    {
        const std::unique_ptr<WindowSystem> windowSystem = makeWindowSystem();
        QVERIFY(windowSystem->honoursPlaces());
        const QString check =
            QString::fromUtf8(outputOf(u"xprop"_s, {u"-root"_s, u"-notype"_s, u"_NET_SUPPORTING_WM_CHECK"_s}))
                .section(u"# "_s, 1)
                .trimmed();
        const auto name = [&check](const QString& value) {
            std::ignore = outputOf(u"xprop"_s, {u"-id"_s, check, u"-f"_s, u"_NET_WM_NAME"_s, u"8u"_s, u"-set"_s,
                                                u"_NET_WM_NAME"_s, value});
        };

        name(u"wlroots wm"_s);
        QVERIFY(!windowSystem->honoursPlaces());
        name(u"Xfwm4"_s);
        QVERIFY(windowSystem->honoursPlaces());
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
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runBesideOtherProgram<lapsa::test::PanelControllerDesktopTest>(argc, argv);
}

#include "PanelController_desktop_test.moc"
