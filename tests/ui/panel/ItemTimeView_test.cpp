// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationEditor.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "ItemTimeView.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "RowIconButton.h"
#include "Sheet.h"
#include "Stepper.h"
#include "TextLabel.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <algorithm>

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
    void theSheetIsAsWideAsTheRowsItCovers();
    void theEditorSpreadsOverTheSheet_data();
    void theEditorSpreadsOverTheSheet();
    void theFieldsBelongToTheFileTimer();
    void atTwiceTheTextSizeTheSheetFitsThePanel();
};

namespace {

using test::named;
using test::PanelWorld;

struct SheetWorld : PanelWorld
{
    explicit SheetWorld(std::int64_t minutes = 90)
        : item(addItem(u"a.txt"_s, minutes))
    {}

    void open()
    {
        QTest::mouseClick(row(0).findChildren<RowIconButton*>().first(), Qt::LeftButton);
        settle();
    }

    /// The sheet that is seen: one that was dismissed is deleted later.
    [[nodiscard]] ItemTimeView* sheet() const
    {
        const auto sheets = panel.findChildren<ItemTimeView*>();
        const auto seen = std::ranges::find_if(sheets, [](const ItemTimeView* view) { return view->isVisible(); });
        return seen != sheets.end() ? *seen : nullptr;
    }

    void press(const QString& button) { QTest::mouseClick(&named<PushButton>(*sheet(), button), Qt::LeftButton); }

    [[nodiscard]] QString choice() const { return sheet()->findChildren<TextLabel*>().at(1)->text(); }

    [[nodiscard]] std::chrono::microseconds remaining() const
    {
        return this->PanelWorld::item(item.path).expiresAt - time.now();
    }

    LapsaItem item;
};

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

void ItemTimeView_test::theSheetIsAsWideAsTheRowsItCovers()
{
    SheetWorld world;
    world.open();

    const QPoint left = world.sheet()->mapTo(&world.panel, QPoint());
    QCOMPARE(left.x(), world.list().x());
    QCOMPARE(world.sheet()->width(), world.list().width());
}

void ItemTimeView_test::theEditorSpreadsOverTheSheet_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::newRow("English") << QByteArray("en_US.UTF-8");
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8");
}

void ItemTimeView_test::theEditorSpreadsOverTheSheet()
{
    QFETCH(const QByteArray, locale);
    const test::Language language(locale.constData());
    SheetWorld world(1530);
    world.open();
    const auto place = [&](const QWidget* widget) {
        return QRect(widget->mapTo(world.sheet(), QPoint()), widget->size());
    };
    const auto quick = world.sheet()->findChildren<PushButton*>();

    QList<QRect> values;
    QList<QRect> steppers;
    for (const Stepper* const stepper : world.sheet()->findChildren<Stepper*>()) {
        steppers.push_back(place(stepper));
        values.push_back(place(stepper->parentWidget()->findChildren<TextLabel*>().at(1)));
    }

    QCOMPARE(values.size(), 3);
    QCOMPARE(values.first().left(), place(quick.at(0)).left());
    QCOMPARE(steppers.last().right(), place(quick.at(3)).right());
    for (int column = 0; column < 3; ++column) {
        QCOMPARE(values[column].width(), values.first().width());
        QCOMPARE(steppers[column].left() - values[column].right(), steppers.first().left() - values.first().right());
    }
    const int firstGap = values[1].left() - steppers[0].right();
    QVERIFY(firstGap > steppers[0].left() - values[0].right()); // a stepper belongs to the value before it
    QVERIFY(qAbs(values[2].left() - steppers[1].right() - firstGap) <= 1);
}

void ItemTimeView_test::atTwiceTheTextSizeTheSheetFitsThePanel()
{
    QFont font = QApplication::font();
    font.setPointSizeF(20);
    QApplication::setFont(font);
    SheetWorld world(364 * 1440 + 23 * 60 + 59);

    world.open();

    QVERIFY(world.panel.rect().contains(world.sheet()->geometry()));
    for (const QWidget* const child : world.sheet()->findChildren<QWidget*>()) {
        if (child->isVisible()) {
            const QRect place(child->mapTo(world.sheet(), QPoint()), child->size());
            QVERIFY2(world.sheet()->rect().contains(place), child->metaObject()->className());
        }
    }
}

QTEST_MAIN(ItemTimeView_test)
#include "ItemTimeView_test.moc"
