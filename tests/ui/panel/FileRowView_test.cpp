// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileIconView.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "PanelWorld.h"
#include "RowIconButton.h"

#include <QAccessible>
#include <QApplication>
#include <QFile>
#include <QMenu>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FileRowView_test final : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void theRemainingTimeIsRoundedUp_data();
    void theRemainingTimeIsRoundedUp();
    void aLockedItemReadsLockedInOrange();
    void theRemainingTimeIsSecondaryHoweverLittleIsLeft();
    void aFileThatSomebodyWritesToReadsInUse_data();
    void aFileThatSomebodyWritesToReadsInUse();
    void theButtonsStandInTheirOrderWithTheirTips();
    void everythingStandsAtItsPlace();
    void theGroundRunsFromWhiteToAccent();
    void lockTogglesTheItemAndItsSymbol();
    void removeFromListKeepsTheFile();
    void deleteNowTakesTheFileAway();
    void deleteNowOfAFolderThatHoldsALockedFileSaysSo_data();
    void deleteNowOfAFolderThatHoldsALockedFileSaysSo();
    void aFileHasFiveEntriesInItsMenu();
    void aFolderHasNoContainingFolderInItsMenu();
    void theEntriesOfTheMenuActOnTheItem();
    void theMenuKeyOpensTheMenu();
    void anyNameIsShownAsPlainTextOnOneLine_data();
    void anyNameIsShownAsPlainTextOnOneLine();
    void aNameThatFitsHasNoToolTipAndALongOneHas();
    void aScreenReaderHearsNameAndRemainingTime();
    void atTwiceTheTextSizeNothingIsCutOff();
    void italianTextsAreItalian();
};

namespace {

using test::PanelWorld;

LapsaItem itemExpiringIn(std::chrono::microseconds remaining)
{
    return {.id = u"A"_s, .path = u"/x"_s, .displayName = u"x"_s, .addedAt = {}, .expiresAt = TimePoint{remaining}};
}

QStringList entries(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* const action : menu.actions()) {
        texts.push_back(action->isSeparator() ? u"-"_s : action->text());
    }
    return texts;
}

ElidedLabel& label(const QWidget& row, qsizetype index)
{
    return *row.findChildren<ElidedLabel*>().at(index);
}

} // namespace

void FileRowView_test::init()
{
    PanelWorld::setUpApplication();
}

void FileRowView_test::theRemainingTimeIsRoundedUp_data()
{
    QTest::addColumn<qint64>("milliseconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("59 seconds are a minute") << qint64(59000) << u"1min left"_s;
    QTest::newRow("30 seconds are a minute") << qint64(30000) << u"1min left"_s;
    QTest::newRow("60 seconds are a minute") << qint64(60000) << u"1min left"_s;
    QTest::newRow("a fraction of a second is dropped first") << qint64(60999) << u"1min left"_s;
    QTest::newRow("61 seconds are two minutes") << qint64(61000) << u"2min left"_s;
    QTest::newRow("an overdue item has a minute") << qint64(-100000) << u"1min left"_s;
    QTest::newRow("days and hours") << qint64(90000) * 1000 << u"1d 1h left"_s;
}

void FileRowView_test::theRemainingTimeIsRoundedUp()
{
    QFETCH(const qint64, milliseconds);
    QFETCH(const QString, text);

    QCOMPARE(FileRowView::remainingText(itemExpiringIn(std::chrono::milliseconds(milliseconds)), TimePoint{}), text);
}

void FileRowView_test::aLockedItemReadsLockedInOrange()
{
    PanelWorld world;
    world.store().toggleLock(world.addItem(u"a.txt"_s));
    PanelWorld::settle();

    const ElidedLabel& remaining = label(world.row(0), 1);
    QCOMPARE(remaining.text(), u"locked"_s);
    QCOMPARE(remaining.role(), ColorRole::Notice);
}

void FileRowView_test::theRemainingTimeIsSecondaryHoweverLittleIsLeft()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s, 1);
    world.addItem(u"b.txt"_s, 500000);

    QCOMPARE(label(world.row(0), 1).role(), ColorRole::Secondary);
    QCOMPARE(label(world.row(1), 1).role(), ColorRole::Secondary);
}

void FileRowView_test::aFileThatSomebodyWritesToReadsInUse_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("inUse");
    QTest::addColumn<QString>("locked");
    QTest::addColumn<QString>("left");
    QTest::newRow("English") << QByteArray("C.UTF-8") << u"In use"_s << u"locked"_s << u"10min left"_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"In uso"_s << u"bloccato"_s << u"10min rimanenti"_s;
}

void FileRowView_test::aFileThatSomebodyWritesToReadsInUse()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, inUse);
    QFETCH(const QString, locked);
    QFETCH(const QString, left);
    const test::Language language(locale.constData());
    PanelWorld world;
    // On another file system than Recovery, so that it has to be copied.
    const QTemporaryDir disk(u"/dev/shm/lapsa-XXXXXX"_s);
    if (!disk.isValid() || QStorageInfo(disk.path()) == QStorageInfo(world.home.path({}))) {
        QSKIP("a second file system at /dev/shm is needed");
    }
    QFile film(disk.filePath(u"film.mkv"_s));
    QVERIFY(film.open(QIODevice::WriteOnly));
    const LapsaItem item = world.add(film.fileName(), 1);
    const auto text = [&] {
        PanelWorld::settle();
        return label(world.row(0), 1).text();
    };
    QVERIFY(text() != inUse);

    world.time.advance(2min);
    world.store().deleteExpiredItems();
    QCOMPARE(text(), inUse);
    QCOMPARE(label(world.row(0), 1).role(), ColorRole::Secondary);
    QCOMPARE(world.row(0).accessibleDescription(), inUse);

    world.store().toggleLock(item);
    QCOMPARE(text(), locked);
    world.store().toggleLock(item);
    QCOMPARE(text(), inUse);
    world.store().updateExpiration(item, 10);
    QCOMPARE(text(), left);

    film.close();
    world.time.advance(10min);
    world.store().deleteExpiredItems();
    PanelWorld::settle();
    QVERIFY(world.list().visibleRows().isEmpty());
}

void FileRowView_test::theButtonsStandInTheirOrderWithTheirTips()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);

    QStringList tips;
    QStringList symbols;
    int x = 0;
    for (const RowIconButton* const button : world.row(0).findChildren<RowIconButton*>()) {
        tips.push_back(button->toolTip());
        symbols.push_back(button->systemName());
        QCOMPARE(button->accessibleName(), button->toolTip());
        QVERIFY(button->x() > x);
        x = button->x();
    }
    QCOMPARE(tips, (QStringList{u"Change timer"_s, u"Lock"_s, u"Remove from list"_s, u"Delete now"_s}));
    QCOMPARE(symbols, (QStringList{u"timer"_s, u"lock.open"_s, u"xmark"_s, u"trash"_s}));
}

void FileRowView_test::everythingStandsAtItsPlace()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    const FileRowView& row = world.row(0);

    const QRect icon = row.findChild<FileIconView*>()->geometry();
    const QRect name = label(row, 0).geometry();
    const QRect remaining = label(row, 1).geometry();
    const auto buttons = row.findChildren<RowIconButton*>();
    QCOMPARE(icon.size(), QSize(24, 24));
    QCOMPARE(icon.x(), 12);
    QCOMPARE(name.x(), icon.right() + 1 + 10);
    QCOMPARE(remaining.y() - name.bottom() - 1, 3);
    QCOMPARE(buttons.at(0)->x(), name.right() + 1 + 10);
    QCOMPARE(buttons.at(1)->x() - buttons.at(0)->geometry().right() - 1, 6);
    QCOMPARE(row.width() - buttons.at(3)->geometry().right() - 1, 12);
    QVERIFY(name.y() >= 12);
    QVERIFY(row.height() - remaining.bottom() - 1 >= 12);
    QCOMPARE(label(row, 0).font().pixelSize(), 13);
    QCOMPARE(label(row, 0).font().weight(), QFont::DemiBold);
    QCOMPARE(label(row, 1).font().pixelSize(), 12);
}

void FileRowView_test::theGroundRunsFromWhiteToAccent()
{
    for (const ColorScheme scheme : {ColorScheme::Light, ColorScheme::Dark}) {
        const QPalette palette = themePalette(scheme);

        const auto stops = FileRowView::groundFor(QRectF(0, 0, 382, 58), palette).stops();

        QCOMPARE(stops.first().second, withOpacity(Qt::white, 0.1));
        QCOMPARE(stops.last().second, withOpacity(themeColor(ColorRole::Accent, palette), 0.035));
    }
}

void FileRowView_test::lockTogglesTheItemAndItsSymbol()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);

    QTest::mouseClick(&world.button(0, u"Lock"_s), Qt::LeftButton);
    PanelWorld::settle();

    QVERIFY(world.item(item.path).locked);
    QCOMPARE(world.button(0, u"Unlock"_s).systemName(), u"lock.fill"_s);
    QTest::mouseClick(&world.button(0, u"Unlock"_s), Qt::LeftButton);
    PanelWorld::settle();
    QVERIFY(!world.item(item.path).locked);
    QCOMPARE(world.button(0, u"Lock"_s).systemName(), u"lock.open"_s);
}

void FileRowView_test::removeFromListKeepsTheFile()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);

    QTest::mouseClick(&world.button(0, u"Remove from list"_s), Qt::LeftButton);

    QVERIFY(world.store().items().isEmpty());
    QVERIFY(QFile::exists(item.path));
}

void FileRowView_test::deleteNowTakesTheFileAway()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);

    QTest::mouseClick(&world.button(0, u"Delete now"_s), Qt::LeftButton);

    QVERIFY(world.store().items().isEmpty());
    QVERIFY(!QFile::exists(item.path));
}

void FileRowView_test::deleteNowOfAFolderThatHoldsALockedFileSaysSo_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("help");
    QTest::addColumn<QString>("message");

    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"Delete now"_s << u"“proj” holds a locked file."_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"Elimina ora"_s << u"“proj” contiene un file bloccato."_s;
}

void FileRowView_test::deleteNowOfAFolderThatHoldsALockedFileSaysSo()
{
    QFETCH(QByteArray, locale);
    QFETCH(QString, help);
    QFETCH(QString, message);
    const test::Language language(locale.constData());
    PanelWorld world;
    const LapsaItem folder = world.addItem(u"proj/"_s);
    const LapsaItem kept = world.addItem(u"proj/keep.txt"_s);
    world.store().toggleLock(kept);

    QTest::mouseClick(&world.button(0, help), Qt::LeftButton);

    QCOMPARE(world.store().lastMessage(), std::optional(message));
    QCOMPARE(world.store().items().size(), 2);
    QVERIFY(kept.exists());
}

void FileRowView_test::aFileHasFiveEntriesInItsMenu()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QMenu menu;

    world.row(0).fillContextMenu(menu);

    QCOMPARE(entries(menu), (QStringList{u"Open file"_s, u"Reveal in Finder"_s, u"-"_s, u"Copy file path"_s,
                                         u"Copy containing folder path"_s}));
}

void FileRowView_test::aFolderHasNoContainingFolderInItsMenu()
{
    PanelWorld world;
    world.addItem(u"pictures/"_s);
    QMenu menu;

    world.row(0).fillContextMenu(menu);

    QCOMPARE(entries(menu), (QStringList{u"Open folder"_s, u"Reveal in Finder"_s, u"-"_s, u"Copy folder path"_s}));
}

void FileRowView_test::theEntriesOfTheMenuActOnTheItem()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"folder/a.txt"_s);
    QMenu menu;
    world.row(0).fillContextMenu(menu);

    for (QAction* const action : menu.actions()) {
        action->trigger();
    }

    QCOMPARE(world.workspace.opened, QList<QUrl>{QUrl::fromLocalFile(item.path)});
    QCOMPARE(world.workspace.revealed, QList<QUrl>{QUrl::fromLocalFile(item.path)});
    QCOMPARE(world.pasteboard.texts, (QStringList{item.path, world.home.path(u"folder"_s)}));
}

void FileRowView_test::theMenuKeyOpensTheMenu()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);

    QContextMenuEvent key(QContextMenuEvent::Keyboard, {10, 10}, world.row(0).mapToGlobal(QPoint(10, 10)));
    QApplication::sendEvent(&world.row(0), &key);

    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    QCOMPARE(entries(*menu).first(), u"Open file"_s);
    menu->close();
}

void FileRowView_test::anyNameIsShownAsPlainTextOnOneLine_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("markup") << u"<b>bold<img src=x>.html"_s;
    QTest::newRow("a line break") << u"first\nsecond.txt"_s;
    QTest::newRow("a control character") << u"bell\u0007.txt"_s;
    QTest::newRow("from right to left") << u"تقرير الربع الأول.pdf"_s;
    QTest::newRow("255 bytes") << QString(251, u'n') + u".txt"_s;
}

void FileRowView_test::anyNameIsShownAsPlainTextOnOneLine()
{
    QFETCH(const QString, name);
    PanelWorld world;
    world.addItem(u"plain.txt"_s);
    const int height = world.row(0).height();

    world.addItem(name);

    const ElidedLabel& shown = label(world.row(1), 0);
    QCOMPARE(shown.textFormat(), Qt::PlainText);
    QVERIFY(!shown.text().contains(u'\n'));
    QCOMPARE(shown.geometry(), label(world.row(0), 0).geometry());
    QCOMPARE(world.row(1).height(), height);
    QCOMPARE(world.row(1).accessibleName(), name);
}

void FileRowView_test::aNameThatFitsHasNoToolTipAndALongOneHas()
{
    PanelWorld world;
    const QString longName = QString(200, u'n') + u".txt"_s;
    world.addItem(u"short.txt"_s);
    world.addItem(longName);

    QCOMPARE(label(world.row(0), 0).toolTip(), QString());
    QCOMPARE(label(world.row(1), 0).toolTip(), longName);
}

void FileRowView_test::aScreenReaderHearsNameAndRemainingTime()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s, 90);

    QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(&world.row(0));
    QCOMPARE(row->role(), QAccessible::ListItem);
    QCOMPARE(row->text(QAccessible::Name), u"a.txt"_s);
    QCOMPARE(row->text(QAccessible::Description), u"1h 30min left"_s);
    QCOMPARE(row->parent()->role(), QAccessible::List);
    QCOMPARE(row->parent()->childCount(), 1);
}

void FileRowView_test::atTwiceTheTextSizeNothingIsCutOff()
{
    QFont font = QApplication::font();
    font.setPointSizeF(20);
    QApplication::setFont(font);
    PanelWorld world;
    world.addItem(u"a.txt"_s, 364 * 1440 + 23 * 60 + 59);
    const FileRowView& row = world.row(0);

    const ElidedLabel& remaining = label(row, 1);
    QCOMPARE(remaining.font().pixelSize(), 24);
    QVERIFY(remaining.sizeHint().width() <= remaining.width());
    for (const QWidget* const child : row.findChildren<QWidget*>()) {
        QVERIFY(row.rect().contains(child->geometry()));
    }
}

void FileRowView_test::italianTextsAreItalian()
{
    const test::Language italian("it_IT.UTF-8");
    PanelWorld world;
    world.addItem(u"a.txt"_s, 90);
    world.addItem(u"cartella/"_s);

    QMenu file;
    QMenu folder;
    world.row(0).fillContextMenu(file);
    world.row(1).fillContextMenu(folder);
    QCOMPARE(label(world.row(0), 1).text(), u"1h 30min rimanenti"_s);
    QCOMPARE(entries(file), (QStringList{u"Apri file"_s, u"Mostra nel Finder"_s, u"-"_s, u"Copia percorso file"_s,
                                         u"Copia cartella del file"_s}));
    QCOMPARE(entries(folder),
             (QStringList{u"Apri cartella"_s, u"Mostra nel Finder"_s, u"-"_s, u"Copia percorso cartella"_s}));
    for (const QString& tip : {u"Cambia scadenza"_s, u"Blocca"_s, u"Rimuovi dalla lista"_s, u"Elimina ora"_s}) {
        QCOMPARE(world.button(0, tip).toolTip(), tip);
    }

    QTest::mouseClick(&world.button(0, u"Blocca"_s), Qt::LeftButton);
    PanelWorld::settle();
    QCOMPARE(label(world.row(0), 1).text(), u"bloccato"_s);
    QCOMPARE(world.row(0).accessibleDescription(), u"bloccato"_s);
    QCOMPARE(world.button(0, u"Sblocca"_s).toolTip(), u"Sblocca"_s);
    QCOMPARE(world.row(0).findChildren<RowIconButton*>().at(1)->accessibleName(), u"Sblocca"_s);
    QTest::mouseClick(&world.button(0, u"Sblocca"_s), Qt::LeftButton);
    PanelWorld::settle();
    QCOMPARE(label(world.row(0), 1).text(), u"1h 30min rimanenti"_s);
}

QTEST_MAIN(FileRowView_test)
#include "FileRowView_test.moc"
