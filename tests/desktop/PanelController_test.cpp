// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ControllerWorld.h"
#include "PanelController.h"
#include "PanelWorld.h"

#include <QSignalSpy>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

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
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::PanelControllerTest)
#include "PanelController_test.moc"
