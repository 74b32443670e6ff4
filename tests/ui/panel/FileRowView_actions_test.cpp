// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileRowView.h"
#include "PanelWorld.h"
#include "RowIconButton.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFile>
#include <QMenu>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// What a row's buttons and its menu do.
class FileRowView_actions_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void lockTogglesTheItemAndItsSymbol();
    void removeFromListKeepsTheFile();
    void deleteNowTakesTheFileAway();
    void deleteNowOfAFolderThatHoldsALockedFileSaysSo_data();
    void deleteNowOfAFolderThatHoldsALockedFileSaysSo();
    void aFileHasFiveEntriesInItsMenu();
    void aFolderHasNoContainingFolderInItsMenu();
    void theEntriesOfTheMenuActOnTheItem();
    void theMenuKeyOpensTheMenu();
    void italianEntriesAreItalian();
};

namespace {

using test::PanelWorld;

QStringList entries(const QMenu& menu)
{
    QStringList texts;
    for (const QAction* const action : menu.actions()) {
        texts.push_back(action->isSeparator() ? u"-"_s : action->text());
    }
    return texts;
}

} // namespace

void FileRowView_actions_test::lockTogglesTheItemAndItsSymbol()
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

void FileRowView_actions_test::removeFromListKeepsTheFile()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);

    QTest::mouseClick(&world.button(0, u"Remove from list"_s), Qt::LeftButton);

    QVERIFY(world.store().items().isEmpty());
    QVERIFY(QFile::exists(item.path));
}

void FileRowView_actions_test::deleteNowTakesTheFileAway()
{
    PanelWorld world;
    const LapsaItem item = world.addItem(u"a.txt"_s);

    QTest::mouseClick(&world.button(0, u"Delete now"_s), Qt::LeftButton);

    QVERIFY(world.store().items().isEmpty());
    QVERIFY(!QFile::exists(item.path));
}

void FileRowView_actions_test::deleteNowOfAFolderThatHoldsALockedFileSaysSo_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("help");
    QTest::addColumn<QString>("message");

    QTest::newRow("English") << QByteArray("en_US.UTF-8") << u"Delete now"_s << u"“proj” holds a locked file."_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8") << u"Elimina ora"_s << u"“proj” contiene un file bloccato."_s;
}

void FileRowView_actions_test::deleteNowOfAFolderThatHoldsALockedFileSaysSo()
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

void FileRowView_actions_test::aFileHasFiveEntriesInItsMenu()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QMenu menu;

    world.row(0).fillContextMenu(menu);

    QCOMPARE(entries(menu), (QStringList{u"Open file"_s, u"Reveal in Finder"_s, u"-"_s, u"Copy file path"_s,
                                         u"Copy containing folder path"_s}));
}

void FileRowView_actions_test::aFolderHasNoContainingFolderInItsMenu()
{
    PanelWorld world;
    world.addItem(u"pictures/"_s);
    QMenu menu;

    world.row(0).fillContextMenu(menu);

    QCOMPARE(entries(menu), (QStringList{u"Open folder"_s, u"Reveal in Finder"_s, u"-"_s, u"Copy folder path"_s}));
}

void FileRowView_actions_test::theEntriesOfTheMenuActOnTheItem()
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

void FileRowView_actions_test::theMenuKeyOpensTheMenu()
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

void FileRowView_actions_test::italianEntriesAreItalian()
{
    const test::Language italian("it_IT.UTF-8");
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    world.addItem(u"cartella/"_s);
    QMenu file;
    QMenu folder;

    world.row(0).fillContextMenu(file);
    world.row(1).fillContextMenu(folder);

    QCOMPARE(entries(file), (QStringList{u"Apri file"_s, u"Mostra nel Finder"_s, u"-"_s, u"Copia percorso file"_s,
                                         u"Copia cartella del file"_s}));
    QCOMPARE(entries(folder),
             (QStringList{u"Apri cartella"_s, u"Mostra nel Finder"_s, u"-"_s, u"Copia percorso cartella"_s}));
}

QTEST_MAIN(FileRowView_actions_test)
#include "FileRowView_actions_test.moc"
