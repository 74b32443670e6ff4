// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "LapsaPanelView.h"
#include "PanelWorld.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QApplication>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class LapsaPanelView_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void withoutItemsTheCountIsPluralAndTheListSaysSo();
    void oneItemIsCountedInTheSingular();
    void twoItemsAreCountedInThePlural();
    void theGearOpensThePreferences();
    void theDropZoneShowsTheDefaultExpiry();
    void aMessageOfTheStoreIsShownInOrangeOnTwoLinesAtMost();
    void theClockRunsOnlyWhileThePanelIsShown();
    void theRowsCountDownEverySecond();
    void aThemeIsAppliedWhenThePanelAppearsAndWhenItChanges();
    void tabGoesThroughThePanelAsItIsRead();
    void italianTextsAreItalian();
};

namespace {

using test::named;
using test::PanelWorld;

QStringList texts(const QWidget& parent)
{
    QStringList shown;
    for (const TextLabel* const label : parent.findChildren<TextLabel*>()) {
        if (label->isVisible()) {
            shown.push_back(label->text());
        }
    }
    return shown;
}

} // namespace

void LapsaPanelView_test::withoutItemsTheCountIsPluralAndTheListSaysSo()
{
    PanelWorld world;

    QCOMPARE(texts(world.panel),
             (QStringList{u"Lapsa"_s, u"Drop files or folders here, or click to select"_s, u"Default expiry: 2h"_s,
                          u"0 items present"_s, u"Nothing here. Add a file or folder to start a countdown."_s}));
    const TextLabel* const empty = world.list().findChild<TextLabel*>();
    QCOMPARE(empty->pos(), QPoint(56, 56));
    QCOMPARE(empty->width(), 382 - 2 * 56);
    QCOMPARE(empty->foregroundRole(), paletteRole(ColorRole::Secondary));
    QVERIFY(empty->alignment().testFlag(Qt::AlignHCenter));
}

void LapsaPanelView_test::oneItemIsCountedInTheSingular()
{
    PanelWorld world;

    world.addItem(u"a.txt"_s);

    QVERIFY(texts(world.panel).contains(u"1 item present"_s));
    QVERIFY(!texts(world.panel).contains(u"Nothing here. Add a file or folder to start a countdown."_s));
}

void LapsaPanelView_test::twoItemsAreCountedInThePlural()
{
    PanelWorld world;

    world.addItem(u"a.txt"_s);
    world.addItem(u"b.txt"_s);

    QVERIFY(texts(world.panel).contains(u"2 items present"_s));
}

void LapsaPanelView_test::theGearOpensThePreferences()
{
    PanelWorld world;
    auto* const gear = world.panel.findChild<SymbolButton*>();

    QTest::mouseClick(gear, Qt::LeftButton);
    QTest::keyClick(gear, Qt::Key_Return);

    QCOMPARE(world.preferencesOpened, 2);
    QCOMPARE(gear->toolTip(), u"Preferences"_s);
    QCOMPARE(gear->accessibleName(), u"Preferences"_s);
}

void LapsaPanelView_test::theDropZoneShowsTheDefaultExpiry()
{
    PanelWorld world;

    world.changeSettings([](LapsaSettings& settings) { settings.defaultExpirationMinutes = 1501; });
    PanelWorld::settle();

    QVERIFY(texts(world.panel).contains(u"Default expiry: 1d 1h 1min"_s));
}

void LapsaPanelView_test::aMessageOfTheStoreIsShownInOrangeOnTwoLinesAtMost()
{
    PanelWorld world;
    const int before = world.list().y();

    world.store().setLastMessage(u"A long message. "_s.repeated(40));
    PanelWorld::settle();

    const QString text = u"A long message. "_s.repeated(40);
    const TextLabel& message = named<TextLabel>(world.panel, text);
    QVERIFY(message.isVisible());
    QCOMPARE(message.foregroundRole(), paletteRole(ColorRole::Notice));
    QCOMPARE(message.font().pixelSize(), 11);
    QCOMPARE(message.height(), 2 * QFontMetrics(message.font()).lineSpacing());
    world.store().setLastMessage({});
    PanelWorld::settle();
    QVERIFY(!message.isVisible());
    QCOMPARE(world.list().y(), before);
}

void LapsaPanelView_test::theClockRunsOnlyWhileThePanelIsShown()
{
    PanelWorld world;
    world.letSavesPass();
    const std::size_t shown = world.time.waitingTasks();

    world.panel.hide();
    QCOMPARE(world.time.waitingTasks(), shown - 1);
    world.panel.show();
    QCOMPARE(world.time.waitingTasks(), shown);
}

void LapsaPanelView_test::theRowsCountDownEverySecond()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s, 2);
    QCOMPARE(world.row(0).accessibleDescription(), u"2min left"_s);

    world.time.advance(59s);
    QCOMPARE(world.row(0).accessibleDescription(), u"2min left"_s);
    world.time.advance(1s);
    QCOMPARE(world.row(0).accessibleDescription(), u"1min left"_s);
    world.panel.hide();
    world.time.advance(3600s);
    world.panel.show();
    QCOMPARE(world.row(0).accessibleDescription(), u"1min left"_s);
}

void LapsaPanelView_test::aThemeIsAppliedWhenThePanelAppearsAndWhenItChanges()
{
    PanelWorld world;
    const qsizetype appeared = world.appearance.forced.size();

    world.panel.hide();
    world.panel.show();
    QCOMPARE(world.appearance.forced.size(), appeared + 1);
    world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });
    PanelWorld::settle();

    QCOMPARE(world.appearance.forced.last(), std::optional(ColorScheme::Dark));
    QVERIFY(world.appearance.forced.size() > appeared + 1);
}

void LapsaPanelView_test::tabGoesThroughThePanelAsItIsRead()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    world.panel.findChild<SymbolButton*>()->setFocus(Qt::TabFocusReason);
    QStringList stops;

    for (int stop = 0; stop < 7; ++stop) {
        stops.push_back(QApplication::focusWidget()->accessibleName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }

    QCOMPARE(stops, (QStringList{u"Preferences"_s, u"Drop files or folders here, or click to select"_s, u"a.txt"_s,
                                 u"Change timer"_s, u"Lock"_s, u"Remove from list"_s, u"Delete now"_s}));
    QCOMPARE(QApplication::focusWidget()->accessibleName(), u"Preferences"_s);
}

void LapsaPanelView_test::italianTextsAreItalian()
{
    const test::Language italian("it_IT.UTF-8");
    PanelWorld world;

    QCOMPARE(texts(world.panel),
             (QStringList{u"Lapsa"_s, u"Trascina file o cartelle qui, o clicca per selezionare"_s,
                          u"Scadenza predefinita: 2h"_s, u"0 elementi presenti"_s,
                          u"Niente qui. Aggiungi un file o una cartella per avviare un conto alla rovescia."_s}));
    QCOMPARE(world.panel.findChild<SymbolButton*>()->toolTip(), u"Preferenze"_s);
    world.addItem(u"a.txt"_s);
    QVERIFY(texts(world.panel).contains(u"1 elemento presente"_s));
}

QTEST_MAIN(LapsaPanelView_test)
#include "LapsaPanelView_test.moc"
