// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "AlertDialog.h"
#include "LapsaPanelView.h"
#include "PanelController.h"
#include "PanelWorld.h"
#include "PreferencesView.h"
#include "RecordingDesktop.h"
#include "StoreWorld.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

/// The controller over the real store. Nobody here acts upon what it announces.
class ControllerWorld final : public StoreWorld
{
public:
    explicit ControllerWorld(bool keepPanelOpen = true)
    {
        changeSettings([keepPanelOpen](LapsaSettings& settings) { settings.keepPanelOpen = keepPanelOpen; });
    }

    [[nodiscard]] bool open() const { return controller.popover() != nullptr && controller.popover()->isVisible(); }

    void show()
    {
        controller.show(&button);
        if (!QTest::qWaitForWindowActive(controller.popover())) {
            qFatal("the panel does not come up");
        }
    }

    /// A click on the button.
    void toggle() { controller.toggle(&button, button.frame()); }

    RecordingIcons icons;
    RecordingStatusButton button;
    RecordingFolderPicker folderPicker;
    PlainWindowSystem windowSystem;
    PlayedPointer pointer;
    PanelController controller{{{store(), time, time, icons}, folderPicker, windowSystem, pointer}};
};

/// A window of the same program that has nothing to do with the panel.
class OtherWindow final
{
public:
    OtherWindow()
    {
        m_window.resize(100, 100);
        m_window.show();
        m_window.activateWindow();
    }

private:
    QWidget m_window;
};

} // namespace

class PanelControllerTest final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void nothingIsMadeBeforeItIsAskedFor()
    {
        const ControllerWorld world;

        QVERIFY(world.controller.popover() == nullptr);
        QVERIFY(world.controller.preferencesWindow() == nullptr);
    }

    void aClickOpensThePanelUnderTheButtonAndHighlightsIt()
    {
        ControllerWorld world;

        world.toggle();

        QVERIFY(world.open());
        QCOMPARE(world.controller.popover()->geometry(), QRect(197, 24, 430, 560));
        QCOMPARE(world.controller.popover()->windowTitle(), u"Lapsa"_s);
        QCOMPARE(world.button.highlights, QList{true});
    }

    void aClickOpensThePanelAtThePlaceOfTheClick()
    {
        ControllerWorld world;
        world.button.place.reset();

        world.controller.toggle(&world.button, QRect(300, 0, 24, 24));

        QCOMPARE(world.controller.popover()->geometry(), QRect(97, 24, 430, 560));
    }

    void aSecondClickClosesThePanelAndSaysSo()
    {
        ControllerWorld world;
        const QSignalSpy closed(&world.controller, &PanelController::popoverDidClose);
        world.toggle();

        world.toggle();

        QVERIFY(!world.open());
        QCOMPARE(closed.size(), 1);
        QCOMPARE(world.button.highlights, QList{true}); // whoever hears of it clears it
    }

    void thePanelIsKeptForTheNextOpening()
    {
        ControllerWorld world;
        world.toggle();
        const QWidget* const panel = world.controller.popover();
        const QWidget* const content = &world.controller.popover()->content();
        world.toggle();

        world.toggle();

        QVERIFY(world.open());
        QCOMPARE(world.controller.popover(), panel);
        QCOMPARE(&world.controller.popover()->content(), content);
    }

    void showingAnOpenPanelKeepsItOpenAndFollowsTheButton()
    {
        ControllerWorld world;
        world.controller.show(&world.button);
        world.button.place = QRect(300, 0, 24, 24);

        world.controller.show(&world.button);

        QVERIFY(world.open());
        QCOMPARE(world.controller.popover()->pos(), QPoint(97, 24));
    }

    void closingWhatWasNeverOpenDoesNothing()
    {
        ControllerWorld world;
        const QSignalSpy closed(&world.controller, &PanelController::popoverDidClose);

        world.controller.close();

        QVERIFY(world.controller.popover() == nullptr);
        QCOMPARE(closed.size(), 0);
    }

    void withoutAPlaceThePanelComesUpInTheTopRightCorner()
    {
        ControllerWorld world;
        world.button.place = std::nullopt;

        world.controller.show(&world.button);

        const QRect workArea = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(world.controller.popover()->geometry().topRight(), workArea.topRight());
    }

    void withoutAButtonThereIsAnAlertInPlaceOfThePanel()
    {
        ControllerWorld world;

        world.controller.toggle(nullptr, std::nullopt);

        QVERIFY(!world.open());
        const AlertDialog* const alert = world.controller.alert();
        QVERIFY(alert != nullptr && alert->isVisible() && alert->isModal());
        QCOMPARE(alert->windowTitle(), u"Lapsa"_s);
        QStringList texts;
        for (const TextLabel* const label : alert->findChildren<TextLabel*>()) {
            texts.push_back(label->text());
        }
        QCOMPARE(texts, QStringList({u"Lapsa"_s, u"Use the menu bar icon to open Lapsa."_s}));
    }

    void theAlertGoesAwayByReturnOrEscape_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Escape") << int(Qt::Key_Escape);
    }

    void theAlertGoesAwayByReturnOrEscape()
    {
        QFETCH(const int, key);
        ControllerWorld world;
        world.controller.show(nullptr);
        QVERIFY(QTest::qWaitForWindowActive(world.controller.alert()));

        QTest::keyClick(world.controller.alert()->windowHandle(), Qt::Key(key));

        QTRY_VERIFY(world.controller.alert() == nullptr);
    }

    void twoAlertsAreOne()
    {
        ControllerWorld world;
        world.controller.show(nullptr);
        const AlertDialog* const first = world.controller.alert();

        world.controller.show(nullptr);

        QCOMPARE(world.controller.alert(), first);
    }

    void thePanelStaysOpenOrClosesByItselfAsTheSettingWasAtTheOpening()
    {
        ControllerWorld world(false);
        world.controller.show(&world.button);
        QCOMPARE(world.controller.popover()->behavior(), PopoverWindow::Behavior::Transient);

        world.changeSettings([](LapsaSettings& settings) { settings.keepPanelOpen = true; });
        QCOMPARE(world.controller.popover()->behavior(), PopoverWindow::Behavior::Transient);

        world.controller.close();
        world.controller.show(&world.button);
        QCOMPARE(world.controller.popover()->behavior(), PopoverWindow::Behavior::ApplicationDefined);
    }

    void aTransientPanelClosesWhenAnotherWindowGetsTheFocus()
    {
        ControllerWorld world(false);
        const QSignalSpy closed(&world.controller, &PanelController::popoverDidClose);
        world.show();

        const OtherWindow other;

        QTRY_VERIFY(!world.open());
        QCOMPARE(closed.size(), 1);
    }

    void aPanelThatIsKeptOpenStaysWhenAnotherWindowGetsTheFocus()
    {
        ControllerWorld world(true);
        world.show();

        const OtherWindow other;
        QTRY_VERIFY(!world.controller.popover()->isActiveWindow());
        QCoreApplication::processEvents();

        QVERIFY(world.open());
    }

    void theClickThatTookTheFocusAwayDoesNotOpenThePanelAgain()
    {
        ControllerWorld world(false);
        world.show();
        const OtherWindow other;
        QTRY_VERIFY(!world.open());
        world.time.advance(249ms);

        world.toggle();
        QVERIFY(!world.open());

        world.toggle();
        QVERIFY(world.open());
    }

    void aLaterClickOpensThePanelAgain()
    {
        ControllerWorld world(false);
        world.show();
        const OtherWindow other;
        QTRY_VERIFY(!world.open());
        world.time.advance(250ms);

        world.toggle();

        QVERIFY(world.open());
    }

    void escapeClosesThePanelOnlyWhenItMayCloseByItself_data()
    {
        QTest::addColumn<bool>("keepPanelOpen");
        QTest::newRow("transient") << false;
        QTest::newRow("kept open") << true;
    }

    void escapeClosesThePanelOnlyWhenItMayCloseByItself()
    {
        QFETCH(const bool, keepPanelOpen);
        ControllerWorld world(keepPanelOpen);
        world.show();

        QTest::keyClick(world.controller.popover()->windowHandle(), Qt::Key_Escape);

        QCOMPARE(world.open(), keepPanelOpen);
    }

    void afterEscapeTheNextClickOpensThePanel()
    {
        ControllerWorld world(false);
        world.show();
        QTest::keyClick(world.controller.popover()->windowHandle(), Qt::Key_Escape);

        world.toggle();

        QVERIFY(world.open());
    }

    void theGearOpensThePreferences()
    {
        ControllerWorld world;
        world.show();

        QTest::mouseClick(&named<SymbolButton>(world.controller.popover()->content(), u"Preferences"_s),
                          Qt::LeftButton);

        QVERIFY(world.controller.preferencesWindow() != nullptr);
        QVERIFY(world.controller.preferencesWindow()->isVisible());
    }

    void thePreferencesWindowIsTitledClosableAndOfFixedSize()
    {
        const Language language("it_IT.UTF-8");
        ControllerWorld world;

        world.controller.showPreferences();

        const QWidget& window = *world.controller.preferencesWindow();
        QCOMPARE(window.windowTitle(), u"Preferenze"_s);
        QCOMPARE(window.minimumSize(), QSize(620, 620));
        QCOMPARE(window.maximumSize(), QSize(620, 620));
        QVERIFY(window.windowFlags().testFlag(Qt::WindowCloseButtonHint));
        QVERIFY(window.windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
        QVERIFY(!window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        // The window manager's frame moves it a little.
        constexpr int frame = 40;
        QVERIFY(qAbs(window.geometry().center().x() - screen.center().x()) <= frame);
        QVERIFY(qAbs(window.geometry().center().y() - screen.center().y()) <= frame);
    }

    void preferencesAskedForTwiceAreOneWindowThemedEachTime()
    {
        ControllerWorld world;
        world.controller.showPreferences();
        const QWidget* const first = world.controller.preferencesWindow();
        world.controller.preferencesWindow()->close();
        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });
        world.appearance.forced.clear();

        world.controller.showPreferences();

        QCOMPARE(world.controller.preferencesWindow(), first);
        QVERIFY(first->isVisible());
        QVERIFY(!world.appearance.forced.isEmpty());
        QCOMPARE(world.appearance.forced.constFirst(), std::optional(ColorScheme::Dark));
    }

    void minimisedPreferencesComeBack()
    {
        ControllerWorld world;
        world.controller.showPreferences();
        world.controller.preferencesWindow()->showMinimized();

        world.controller.showPreferences();

        QVERIFY(!world.controller.preferencesWindow()->isMinimized());
    }

    void aThemeChangeReachesTheOpenWindowsAtOnce()
    {
        ControllerWorld world;
        world.controller.showPreferences();
        world.appearance.forced.clear();

        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });

        QVERIFY(world.appearance.forced.contains(std::optional(ColorScheme::Dark)));
    }

    void withoutAWindowThereIsNothingToTheme()
    {
        ControllerWorld world;
        world.appearance.forced.clear();

        world.controller.applyTheme(nullptr);

        QVERIFY(world.appearance.forced.isEmpty());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PanelControllerTest)
#include "PanelController_test.moc"
