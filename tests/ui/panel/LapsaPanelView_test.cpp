// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DropZone.h"
#include "FileChooser.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "LapsaPanelView.h"
#include "PanelWorld.h"
#include "PushButton.h"
#include "RowIconButton.h"
#include "SymbolButton.h"
#include "TextLabel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QTreeView>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class LapsaPanelView_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void everythingStandsAtItsPlace();
    void theTitleAndTheTextsHaveTheirSizes();
    void withoutItemsTheCountIsPluralAndTheListSaysSo();
    void oneItemIsCountedInTheSingular();
    void twoItemsAreCountedInThePlural();
    void theGearOpensThePreferences();
    void theDropZoneShowsTheDefaultExpiry();
    void threeDroppedFilesAreAddedOneByOneInTheirOrder();
    void aDropThatIsNoFileIsAcceptedAndAddsNothing_data();
    void aDropThatIsNoFileIsAcceptedAndAddsNothing();
    void theZoneIsHighlightedWhileSomethingIsDraggedOverIt();
    void theChooserTakesFilesAndFoldersInOneCall();
    void theChooserSpeaksTheLanguageAlsoWithAFolderSelected_data();
    void theChooserSpeaksTheLanguageAlsoWithAFolderSelected();
    void aCancelledChooserAddsNothing();
    void aMessageOfTheStoreIsShownInOrangeOnTwoLinesAtMost();
    void theClockRunsOnlyWhileThePanelIsShown();
    void theRowsCountDownEverySecond();
    void aThemeIsAppliedWhenThePanelAppearsAndWhenItChanges();
    void tabGoesThroughThePanelAsItIsRead();
    void theGroundIsTheThemesInLightAndDark();
    void atTwiceTheTextSizeNothingIsCutOff();
    void fromRightToLeftThePanelIsMirrored();
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

/// The labels and buttons of a file dialog as they are shown.
QStringList textsOf(const FileChooser& chooser)
{
    QStringList shown;
    for (const TextLabel* const label : chooser.findChildren<TextLabel*>()) {
        shown.push_back(label->text());
    }
    for (const PushButton* const button : chooser.findChildren<PushButton*>()) {
        shown.push_back(button->text());
    }
    return shown;
}

/// Goes into a folder as the user does.
void enter(const FileChooser& chooser, const QString& folder)
{
    auto* const field = chooser.findChild<QLineEdit*>();
    field->setText(folder);
    QTest::keyClick(field, Qt::Key_Return);
}

DropZone& zone(PanelWorld& world)
{
    return *world.panel.findChild<DropZone*>();
}

QRect placeOf(const PanelWorld& world, const QWidget& widget)
{
    return {widget.mapTo(&world.panel, QPoint()), widget.size()};
}

/// Drags `data` in and drops it; the answer is whether the drop was accepted.
bool drop(DropZone& target, const QMimeData& data)
{
    QDragEnterEvent enter({20, 20}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent event({20, 20}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
    return enter.isAccepted() && event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

} // namespace

void LapsaPanelView_test::everythingStandsAtItsPlace()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    world.addItem(u"b.txt"_s);

    const QRect gear = placeOf(world, *world.panel.findChild<SymbolButton*>());
    const QRect title = placeOf(world, *world.panel.findChildren<TextLabel*>().first());
    const QRect drops = placeOf(world, zone(world));
    const QRect list = placeOf(world, world.list());
    QCOMPARE(world.panel.size(), QSize(430, 560));
    QCOMPARE(world.panel.windowTitle(), u"Lapsa"_s);
    QCOMPARE(gear.size(), QSize(36, 36));
    QCOMPARE(gear.right() + 1, 430 - 24);
    QCOMPARE(gear.top(), 24);
    QCOMPARE(title.left(), 24);
    QCOMPARE(drops.left(), 24);
    QCOMPARE(drops.width(), 430 - 2 * 24);
    QVERIFY(drops.height() >= 126);
    QCOMPARE(drops.top(), 24 + 36 + 18);
    QCOMPARE(list.left(), 24);
    QCOMPARE(list.width(), 382);
    QCOMPARE(list.bottom() + 1, 560 - 24);
    QCOMPARE(world.row(1).y() - world.row(0).geometry().bottom() - 1, 10);
}

void LapsaPanelView_test::theTitleAndTheTextsHaveTheirSizes()
{
    PanelWorld world;
    const auto labels = world.panel.findChildren<TextLabel*>();

    QCOMPARE(labels.at(0)->text(), u"Lapsa"_s);
    QCOMPARE(labels.at(0)->font().pixelSize(), 28);
    QCOMPARE(labels.at(0)->font().weight(), QFont::Bold);
    const auto inZone = zone(world).findChildren<TextLabel*>();
    QCOMPARE(inZone.at(0)->font().pixelSize(), 18);
    QCOMPARE(inZone.at(0)->font().weight(), QFont::DemiBold);
    QCOMPARE(inZone.at(1)->font().pixelSize(), 11);
    const QFont count = named<TextLabel>(world.panel, u"0 items present"_s).font();
    QCOMPARE(count.pixelSize(), 14);
    QCOMPARE(count.weight(), QFont::Bold);
}

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

void LapsaPanelView_test::threeDroppedFilesAreAddedOneByOneInTheirOrder()
{
    PanelWorld world;
    QMimeData data;
    QList<QUrl> urls;
    for (const QString& name : {u"b.txt"_s, u"c.txt"_s, u"a.txt"_s}) {
        urls.push_back(QUrl::fromLocalFile(world.home.makeFile(name)));
    }
    data.setUrls(urls);
    // One announcement for each call, however many files are in it: the sizes of the list seen are those before each.
    QList<qsizetype> before;
    connect(&world.store(), &LapsaStore::willChange, this, [&] { before.push_back(world.store().items().size()); });

    QVERIFY(drop(zone(world), data));
    PanelWorld::settle();

    QCOMPARE(world.listedNames(), (QStringList{u"b.txt"_s, u"c.txt"_s, u"a.txt"_s}));
    QVERIFY(before.contains(0) && before.contains(1) && before.contains(2));
    QCOMPARE(world.row(0).item().displayName, u"b.txt"_s);
}

void LapsaPanelView_test::aDropThatIsNoFileIsAcceptedAndAddsNothing_data()
{
    QTest::addColumn<QString>("uriList");
    QTest::newRow("plain text") << QString();
    QTest::newRow("an address of the web") << u"https://example.org/a.txt"_s;
    QTest::newRow("a file that has vanished") << u"file:///nowhere/at/all.txt"_s;
    QTest::newRow("an address without a scheme") << u"/etc/hostname"_s;
}

void LapsaPanelView_test::aDropThatIsNoFileIsAcceptedAndAddsNothing()
{
    QFETCH(const QString, uriList);
    PanelWorld world;
    QMimeData data;
    data.setText(u"some text"_s);
    if (!uriList.isEmpty()) {
        data.setData(u"text/uri-list"_s, uriList.toUtf8());
    }

    QVERIFY(drop(zone(world), data));

    QVERIFY(world.store().items().isEmpty());
}

void LapsaPanelView_test::theZoneIsHighlightedWhileSomethingIsDraggedOverIt()
{
    PanelWorld world;
    QMimeData data;
    const QRgb rest = zone(world).grab().toImage().pixel(30, 60);
    QDragEnterEvent enter({20, 20}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&zone(world), &enter);

    const QRgb dragged = zone(world).grab().toImage().pixel(30, 60);
    QCOMPARE(rest, DropZone::lookFor(false, 0, world.panel.palette()).fill.rgb());
    QCOMPARE(dragged, DropZone::lookFor(true, 0, world.panel.palette()).fill.rgb());
    QCOMPARE(DropZone::lookFor(true, 0, world.panel.palette()).border.color(),
             themeColor(ColorRole::Accent, world.panel.palette()));
    QDragLeaveEvent leave;
    QApplication::sendEvent(&zone(world), &leave);
    QCOMPARE(zone(world).grab().toImage().pixel(30, 60), rest);
}

void LapsaPanelView_test::theChooserTakesFilesAndFoldersInOneCall()
{
    PanelWorld world;
    world.home.makeFile(u"chosen/a file.txt"_s);
    world.home.makeFolder(u"chosen/a folder"_s);
    world.home.makeFile(u"chosen/left alone.txt"_s);
    QTest::mouseClick(&zone(world), Qt::LeftButton);
    FileChooser* const chooser = world.panel.chooser();
    QVERIFY(chooser != nullptr);
    enter(*chooser, world.home.path(u"chosen"_s));
    auto* const view = chooser->findChild<QTreeView*>();
    QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 3);
    // In two calls, the second one would be announced while the first one's item is on the list.
    QList<qsizetype> before;
    connect(&world.store(), &LapsaStore::willChange, this, [&] { before.push_back(world.store().items().size()); });

    for (int row = 0; row < 3; ++row) {
        const QModelIndex index = view->model()->index(row, 0, view->rootIndex());
        if (index.data().toString() != u"left alone.txt"_s) {
            view->selectionModel()->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
    }
    named<PushButton>(*chooser, u"Add"_s).click();

    QStringList names = world.listedNames();
    names.sort();
    QCOMPARE(names, (QStringList{u"a file.txt"_s, u"a folder"_s}));
    QVERIFY(before.contains(0) && !before.contains(1));
    QCOMPARE(world.store().lastMessage(), u"“a folder” goes as a whole: no files yet."_s);
    QTRY_VERIFY(world.panel.chooser() == nullptr);
}

void LapsaPanelView_test::theChooserSpeaksTheLanguageAlsoWithAFolderSelected_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QStringList>("texts");
    QTest::newRow("English") << QByteArray("en_US.UTF-8") << QStringList{u"Name:"_s, u"Cancel"_s, u"Add"_s};
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << QStringList{u"Nome:"_s, u"Annulla"_s, u"Aggiungi"_s};
}

void LapsaPanelView_test::theChooserSpeaksTheLanguageAlsoWithAFolderSelected()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QStringList, texts);
    const test::Language language(locale.constData());
    PanelWorld world;
    world.home.makeFolder(u"chosen/a folder"_s);
    QTest::mouseClick(&zone(world), Qt::LeftButton);
    FileChooser& chooser = *world.panel.chooser();
    QCOMPARE(textsOf(chooser), texts);
    enter(chooser, world.home.path(u"chosen"_s));
    auto* const view = chooser.findChild<QTreeView*>();
    QTRY_COMPARE(view->model()->rowCount(view->rootIndex()), 1);

    view->setCurrentIndex(view->model()->index(0, 0, view->rootIndex()));
    QVERIFY(named<PushButton>(chooser, texts.constLast()).isEnabled());
    PanelWorld::settle();

    QCOMPARE(textsOf(chooser), texts);
    QTest::keyClick(&chooser, Qt::Key_Escape);
    QTRY_VERIFY(world.panel.chooser() == nullptr);
}

void LapsaPanelView_test::aCancelledChooserAddsNothing()
{
    PanelWorld world;
    QTest::keyClick(&zone(world), Qt::Key_Space);
    QVERIFY(world.panel.chooser() != nullptr);

    world.panel.chooser()->reject();

    QVERIFY(world.store().items().isEmpty());
    QTRY_VERIFY(world.panel.chooser() == nullptr);
    QTest::mouseClick(&zone(world), Qt::LeftButton);
    QVERIFY(world.panel.chooser() != nullptr);
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

void LapsaPanelView_test::theGroundIsTheThemesInLightAndDark()
{
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        QApplication::setPalette(themePalette(scheme));
        PanelWorld world;

        const QImage picture = world.panel.grab().toImage();

        const QColor ground = themeColor(ColorRole::Window, world.panel.palette());
        const QColor bottom = picture.pixelColor(200, 555);
        QVERIFY(std::abs(bottom.red() - ground.red()) <= 1);
        QVERIFY(std::abs(bottom.green() - ground.green()) <= 1);
        QVERIFY(std::abs(bottom.blue() - ground.blue()) <= 1);
        QVERIFY(contrastRatio(picture.pixelColor(200, 4), themeColor(ColorRole::Secondary, world.panel.palette())) >=
                textContrast);
    }
}

void LapsaPanelView_test::atTwiceTheTextSizeNothingIsCutOff()
{
    for (const char* const locale : {"C.UTF-8", "it_IT.UTF-8"}) {
        const test::Language language(locale);
        QFont font = QApplication::font();
        font.setPointSizeF(20);
        QApplication::setFont(font);
        PanelWorld world;
        world.addItem(u"a.txt"_s);

        for (const TextLabel* const label : world.panel.findChildren<TextLabel*>()) {
            if (label->isVisible()) {
                QVERIFY2(label->height() >= label->heightForWidth(label->width()), qPrintable(label->text()));
                QVERIFY2(label->width() >= label->minimumSizeHint().width(), qPrintable(label->text()));
            }
        }
        QVERIFY(world.list().height() > 0);
    }
}

void LapsaPanelView_test::fromRightToLeftThePanelIsMirrored()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);

    world.panel.setLayoutDirection(Qt::RightToLeft);
    PanelWorld::settle();

    QCOMPARE(placeOf(world, *world.panel.findChild<SymbolButton*>()).left(), 24);
    QVERIFY(world.button(0, u"Delete now"_s).x() < world.button(0, u"Change timer"_s).x());
    QCOMPARE(world.button(0, u"Delete now"_s).x(), 12);
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
