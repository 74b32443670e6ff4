// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "FocusRing.h"
#include "PanelWorld.h"
#include "RowIconButton.h"

#include <QApplication>
#include <QTest>
#include <QWindow>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// Where the keyboard is in the panel: never, unseen, on a button that takes files away.
class PanelFocus_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void aDoubleClickOnTheTrashTakesOneFileAndTheNextKeysNone();
    void aSwallowedClickMovesNoFocus();
    void aClickOnAButtonPutsTheFocusOnItsRowWithoutARing();
    void anOpenedPanelHasItsFocusOnTheListWithoutARing();
    void aReopenedPanelForgetsTheButtonThatHadTheFocus();
    void aReopenedPanelKeepsTheFocusInItsSheet();
    void theKeyboardGoesFromTheListToItsRows_data();
    void theKeyboardGoesFromTheListToItsRows();
    void afterADeletionByKeyboardTheRingIsOnTheRowInItsPlace();
    void afterTheLastFileTheFocusIsOnTheList();
    void aSheetWhoseItemGoesLeavesTheFocusOnTheRowInItsPlace();
};

namespace {

using test::PanelWorld;

struct ThreeFiles : PanelWorld
{
    ThreeFiles()
    {
        for (const QString& name : {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}) {
            addItem(name);
        }
    }

    [[nodiscard]] RowIconButton& trash(qsizetype row) { return button(row, u"Delete now"_s); }

    /// As from a hand: the second press comes where the first was, whatever stands there by then.
    void doubleClick(const QWidget& target)
    {
        const QPoint place = target.mapTo(&panel, target.rect().center());
        QTest::mouseClick(panel.childAt(place), Qt::LeftButton);
        settle();
        QWidget* const below = panel.childAt(place);
        QTest::mouseDClick(below != nullptr ? below : &panel, Qt::LeftButton); // the message has moved the rows
        settle();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(panel.windowHandle(), key, modifiers);
        settle();
    }

    /// Closed while another window is worked in, then opened again.
    void reopen()
    {
        panel.hide();
        QWidget other;
        bringUp(other);
        bringUp(panel);
    }

    [[nodiscard]] FocusRing& ring() { return *panel.findChild<FocusRing*>(); }

private:
    static void bringUp(QWidget& window)
    {
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window)) {
            qFatal("the window does not become active");
        }
        settle();
    }
};

QWidget* focus()
{
    return QApplication::focusWidget();
}

} // namespace

void PanelFocus_test::aDoubleClickOnTheTrashTakesOneFileAndTheNextKeysNone()
{
    ThreeFiles world;

    world.doubleClick(world.trash(0));
    QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s}));
    QCOMPARE(focus(), static_cast<QWidget*>(&world.row(0)));
    world.press(Qt::Key_Space);
    world.press(Qt::Key_Return);

    QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s}));
}

void PanelFocus_test::aSwallowedClickMovesNoFocus()
{
    ThreeFiles world;
    world.row(2).setFocus(Qt::TabFocusReason);

    QTest::mouseDClick(&world.trash(0), Qt::LeftButton);

    QCOMPARE(focus(), static_cast<QWidget*>(&world.row(2)));
    QVERIFY(world.ring().isVisible());
}

void PanelFocus_test::aClickOnAButtonPutsTheFocusOnItsRowWithoutARing()
{
    ThreeFiles world;
    world.trash(1).setFocus(Qt::TabFocusReason);
    QVERIFY(world.ring().isVisible());

    QTest::mouseClick(&world.button(1, u"Lock"_s), Qt::LeftButton);

    QCOMPARE(focus(), static_cast<QWidget*>(&world.row(1)));
    QVERIFY(!world.ring().isVisible());
    QVERIFY(world.store().items().at(1).locked);
}

void PanelFocus_test::anOpenedPanelHasItsFocusOnTheListWithoutARing()
{
    ThreeFiles world;

    QCOMPARE(focus(), static_cast<QWidget*>(&world.list()));
    QVERIFY(!world.ring().isVisible());
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Delete}) {
        world.press(key);
        QCOMPARE(focus(), static_cast<QWidget*>(&world.list()));
    }
    QCOMPARE(world.listedNames().size(), 3);
    QVERIFY(!world.panel.showingSheet());
}

void PanelFocus_test::aReopenedPanelForgetsTheButtonThatHadTheFocus()
{
    ThreeFiles world;
    world.trash(1).setFocus(Qt::TabFocusReason);
    QVERIFY(world.ring().isVisible());

    world.reopen();
    QCOMPARE(focus(), static_cast<QWidget*>(&world.list()));
    QVERIFY(!world.ring().isVisible());
    world.press(Qt::Key_Return);
    world.press(Qt::Key_Space);

    QCOMPARE(world.listedNames().size(), 3);
}

void PanelFocus_test::aReopenedPanelKeepsTheFocusInItsSheet()
{
    ThreeFiles world;
    QTest::mouseClick(&world.button(0, u"Change timer"_s), Qt::LeftButton);
    const QWidget* const inSheet = focus();
    QVERIFY(world.panel.showingSheet() && !world.list().isAncestorOf(inSheet));

    world.reopen();

    QCOMPARE(focus(), inSheet);
}

void PanelFocus_test::theKeyboardGoesFromTheListToItsRows_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<int>("row");
    QTest::newRow("Down to the first") << Qt::Key_Down << 0;
    QTest::newRow("Up to the first") << Qt::Key_Up << 0;
    QTest::newRow("Tab to the first") << Qt::Key_Tab << 0;
    QTest::newRow("Home to the first") << Qt::Key_Home << 0;
    QTest::newRow("End to the last") << Qt::Key_End << 2;
}

void PanelFocus_test::theKeyboardGoesFromTheListToItsRows()
{
    QFETCH(const Qt::Key, key);
    QFETCH(const int, row);
    ThreeFiles world;

    world.press(key);

    QCOMPARE(focus(), static_cast<QWidget*>(&world.row(row)));
    QVERIFY(world.ring().isVisible());
    world.row(0).setFocus(Qt::TabFocusReason);
    world.press(Qt::Key_Backtab, Qt::ShiftModifier);
    QVERIFY(qobject_cast<DropZone*>(focus()) != nullptr); // the list itself is no stop
}

void PanelFocus_test::afterADeletionByKeyboardTheRingIsOnTheRowInItsPlace()
{
    ThreeFiles world;
    world.press(Qt::Key_Down);
    for (int stop = 0; stop < 4; ++stop) {
        world.press(Qt::Key_Tab);
    }
    QCOMPARE(focus(), static_cast<QWidget*>(&world.trash(0)));

    world.press(Qt::Key_Return);
    QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s}));
    QCOMPARE(focus(), static_cast<QWidget*>(&world.row(0)));
    QVERIFY(world.ring().isVisible());
    world.press(Qt::Key_Return);

    QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s}));
    QVERIFY(world.panel.showingSheet());
}

void PanelFocus_test::afterTheLastFileTheFocusIsOnTheList()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    world.button(0, u"Delete now"_s).setFocus(Qt::TabFocusReason);

    QTest::keyClick(world.panel.windowHandle(), Qt::Key_Return);
    PanelWorld::settle();

    QVERIFY(world.store().items().isEmpty());
    QCOMPARE(focus(), static_cast<QWidget*>(&world.list()));
}

void PanelFocus_test::aSheetWhoseItemGoesLeavesTheFocusOnTheRowInItsPlace()
{
    ThreeFiles world;
    QTest::mouseClick(&world.button(1, u"Change timer"_s), Qt::LeftButton);
    PanelWorld::settle();

    world.store().removeFromList(world.store().items().at(1));
    PanelWorld::settle();

    QVERIFY(!world.panel.showingSheet());
    QCOMPARE(focus(), static_cast<QWidget*>(&world.row(1)));
    QCOMPARE(world.row(1).item().displayName, u"c.txt"_s);
}

QTEST_MAIN(PanelFocus_test)
#include "PanelFocus_test.moc"
