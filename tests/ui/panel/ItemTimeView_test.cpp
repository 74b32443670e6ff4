// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "FileRowView.h"
#include "ItemTimeView.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "Sheet.h"
#include "SheetWorld.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ItemTimeView_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void anItemWithNinetyMinutesLeftShowsThem();
    void secondsAreDroppedAndOneMinuteIsTheLeast();
    void sevenDaysSavedCountFromTheMomentOfSaving();
    void everyQuickButtonSetsItsMinutes_data();
    void everyQuickButtonSetsItsMinutes();
    void cancelChangesNothing();
    void escapeCancels();
    void returnSaves();
    void returnOnAQuickButtonSavesWhatIsShown();
    void tabStaysInTheSheet();
    void theCoveredPanelCannotBeClicked();
    void theFocusGoesBackToTheRow();
    void theSheetGoesWithItsItem();
    void returnOnTheRowOpensTheSheet();
    void italianTextsAreItalian();
    void theFieldsBelongToTheFileTimer();
};

namespace {

using test::named;
using test::PanelWorld;
using test::SheetWorld;

} // namespace

void ItemTimeView_test::anItemWithNinetyMinutesLeftShowsThem()
{
    SheetWorld world(90);

    world.open();

    QCOMPARE(world.choice(), u"1h 30min"_s);
    QCOMPARE(named<Stepper>(*world.sheet(), u"Hours"_s).value(), 1);
    QCOMPARE(named<Stepper>(*world.sheet(), u"Minutes"_s).value(), 30);
    QCOMPARE(world.sheet()->findChildren<TextLabel*>().first()->text(), u"File timer"_s);
}

void ItemTimeView_test::secondsAreDroppedAndOneMinuteIsTheLeast()
{
    SheetWorld world(3);
    world.time.setClock(world.time.now() + 61s);
    world.open();
    QCOMPARE(world.choice(), u"1min"_s);
    world.press(u"Cancel"_s);

    world.time.setClock(world.time.now() + 10min);
    world.open();

    QCOMPARE(world.choice(), u"1min"_s);
}

void ItemTimeView_test::sevenDaysSavedCountFromTheMomentOfSaving()
{
    SheetWorld world(90);
    world.open();
    world.press(u"7d"_s);
    world.time.setClock(world.time.now() + 5min);

    world.press(u"Save"_s);

    QCOMPARE(world.remaining(), 10080min);
    QVERIFY(!world.panel.showingSheet());
}

void ItemTimeView_test::everyQuickButtonSetsItsMinutes_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("choice");
    QTest::newRow("ten minutes") << u"10m"_s << u"10min"_s;
    QTest::newRow("two hours") << u"2h"_s << u"2h"_s;
    QTest::newRow("a day") << u"1d"_s << u"1d"_s;
    QTest::newRow("a week") << u"7d"_s << u"7d"_s;
}

void ItemTimeView_test::everyQuickButtonSetsItsMinutes()
{
    QFETCH(const QString, label);
    QFETCH(const QString, choice);
    SheetWorld world(90);
    world.open();

    world.press(label);

    QCOMPARE(world.choice(), choice);
    QCOMPARE(world.remaining(), 90min);
}

void ItemTimeView_test::cancelChangesNothing()
{
    SheetWorld world(90);
    world.open();
    world.press(u"7d"_s);

    world.press(u"Cancel"_s);

    QVERIFY(!world.panel.showingSheet());
    QCOMPARE(world.remaining(), 90min);
}

void ItemTimeView_test::escapeCancels()
{
    SheetWorld world(90);
    world.open();
    world.press(u"7d"_s);

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);

    QVERIFY(!world.panel.showingSheet());
    QCOMPARE(world.remaining(), 90min);
}

void ItemTimeView_test::returnSaves()
{
    SheetWorld world(90);
    world.open();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);

    QVERIFY(!world.panel.showingSheet());
    QCOMPARE(world.remaining(), 1530min);
}

void ItemTimeView_test::returnOnAQuickButtonSavesWhatIsShown()
{
    SheetWorld world(90);
    world.open();

    QTest::keyClick(&named<PushButton>(*world.sheet(), u"7d"_s), Qt::Key_Return);

    QVERIFY(!world.panel.showingSheet());
    QCOMPARE(world.remaining(), 90min);
}

void ItemTimeView_test::tabStaysInTheSheet()
{
    SheetWorld world(90);
    world.open();
    QStringList names;

    for (int stop = 0; stop < 9; ++stop) {
        const QWidget* const focus = QApplication::focusWidget();
        names.push_back(focus->accessibleName() + focus->property("text").toString());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }

    QVERIFY(names.first().startsWith(u"Days"_s));
    QVERIFY(names.at(1).startsWith(u"Hours"_s));
    QVERIFY(names.at(2).startsWith(u"Minutes"_s));
    QCOMPARE(names.sliced(3), (QStringList{u"10m"_s, u"2h"_s, u"1d"_s, u"7d"_s, u"Cancel"_s, u"Save"_s}));
    QVERIFY(QApplication::focusWidget()->accessibleName() == u"Days"_s);
}

void ItemTimeView_test::theCoveredPanelCannotBeClicked()
{
    SheetWorld world(90);
    world.open();
    const QPoint gear(390, 40);

    QTest::mouseClick(world.panel.childAt(gear), Qt::LeftButton);

    QCOMPARE(qobject_cast<Sheet*>(world.panel.childAt(gear)), world.panel.findChild<Sheet*>());
    QCOMPARE(world.preferencesOpened, 0);
}

void ItemTimeView_test::theFocusGoesBackToTheRow()
{
    SheetWorld world(90);
    world.open();

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);

    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&world.row(0)));
}

void ItemTimeView_test::theSheetGoesWithItsItem()
{
    SheetWorld world(90);
    world.open();

    world.store().removeFromList(world.item);
    PanelWorld::settle();

    QVERIFY(!world.panel.showingSheet());
}

void ItemTimeView_test::returnOnTheRowOpensTheSheet()
{
    SheetWorld world(90);

    QTest::keyClick(&world.row(0), Qt::Key_Delete);
    QCOMPARE(world.store().items().size(), 1);
    world.row(0).setFocus();
    QTest::keyClick(&world.row(0), Qt::Key_Return);

    QVERIFY(world.panel.showingSheet());
}

void ItemTimeView_test::italianTextsAreItalian()
{
    const test::Language italian("it_IT.UTF-8");
    SheetWorld world(1500);
    world.open();

    QCOMPARE(world.choice(), u"1g 1h"_s);
    QCOMPARE(world.sheet()->findChildren<TextLabel*>().first()->text(), u"Scadenza file"_s);
    named<PushButton>(*world.sheet(), u"Annulla"_s).click();
    world.open();
    world.press(u"Salva"_s);
    QVERIFY(!world.panel.showingSheet());
}

void ItemTimeView_test::theFieldsBelongToTheFileTimer()
{
    SheetWorld world(90);

    world.open();

    QAccessibleInterface* const editor =
        QAccessible::queryAccessibleInterface(world.sheet()->findChild<DurationEditor*>());
    QCOMPARE(editor->role(), QAccessible::Grouping);
    QCOMPARE(editor->text(QAccessible::Name), u"File timer"_s);
}

QTEST_MAIN(ItemTimeView_test)
#include "ItemTimeView_test.moc"
