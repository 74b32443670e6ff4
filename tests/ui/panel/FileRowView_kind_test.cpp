// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileIconView.h"
#include "FileRowView.h"
#include "PanelWorld.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

using test::PanelWorld;

/// The panel with one item, while no lane has looked at it yet.
struct UnknownItem
{
    explicit UnknownItem(const QString& name)
    {
        const QString path = name.endsWith(u'/') ? world.home.makeFolder(name.chopped(1)) : world.home.makeFile(name);
        item = world.add(path);
        world.lanes.setRuns(test::ManualLanes::Runs::WhenTheTestSaysSo);
        PanelWorld::settle();
    }

    [[nodiscard]] QColor icon() { return world.row(0).findChild<FileIconView*>()->grab().toImage().pixelColor(12, 12); }

    /// The first entry of the open menu.
    [[nodiscard]] QString firstEntry()
    {
        const auto menus = world.row(0).findChildren<QMenu*>();
        return menus.isEmpty() ? QString() : menus.constLast()->actions().constFirst()->text();
    }

    void openMenu()
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {10, 10}, world.row(0).mapToGlobal(QPoint(10, 10)));
        QApplication::sendEvent(&world.row(0), &event);
    }

    PanelWorld world;
    LapsaItem item;
};

} // namespace

/// What a row shows before and after it is known whether its item is a folder.
class FileRowView_kind_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { test::PanelWorld::setUpApplication(); }

    void aFolderLooksLikeAFileUntilItIsKnown();
    void theMenuOfAnUnknownItemIsThatOfAFile();
    void anOpenMenuFollowsTheAnswer();
    void aFileThatBecameAFolderIsFoundByItsMenu();
    void anAnswerForARowThatIsGoneChangesNothing();
    void anAnswerAfterThePanelIsClosedIsThereWhenItOpens();
};

void FileRowView_kind_test::aFolderLooksLikeAFileUntilItIsKnown()
{
    UnknownItem shown(u"pictures/"_s);
    QCOMPARE(shown.icon(), shown.world.icons.color);

    shown.world.lanes.runAll();

    QCOMPARE(shown.icon(), shown.world.icons.folderColor);
}

void FileRowView_kind_test::theMenuOfAnUnknownItemIsThatOfAFile()
{
    UnknownItem shown(u"pictures/"_s);
    QMenu before;
    QMenu after;

    shown.world.row(0).fillContextMenu(before);
    shown.world.lanes.runAll();
    shown.world.row(0).fillContextMenu(after);

    QCOMPARE(before.actions().constFirst()->text(), u"Open file"_s);
    QCOMPARE(after.actions().constFirst()->text(), u"Open folder"_s);
}

void FileRowView_kind_test::anOpenMenuFollowsTheAnswer()
{
    UnknownItem shown(u"pictures/"_s);
    shown.openMenu();
    QCOMPARE(shown.firstEntry(), u"Open file"_s);

    shown.world.lanes.runAll();

    QCOMPARE(shown.firstEntry(), u"Open folder"_s);
}

void FileRowView_kind_test::aFileThatBecameAFolderIsFoundByItsMenu()
{
    UnknownItem shown(u"thing"_s);
    shown.world.lanes.runAll();
    QVERIFY(QFile::remove(shown.item.path) && QDir().mkdir(shown.item.path));

    shown.openMenu();
    shown.world.lanes.runAll();

    QCOMPARE(shown.firstEntry(), u"Open folder"_s);
    QCOMPARE(shown.icon(), shown.world.icons.folderColor);
}

void FileRowView_kind_test::anAnswerForARowThatIsGoneChangesNothing()
{
    UnknownItem shown(u"pictures/"_s);
    const Lanes::Report report = shown.world.lanes.workOnNext();
    shown.world.lanes.setRuns(test::ManualLanes::Runs::AtOnce);
    shown.world.store().removeFromList(shown.item);
    shown.world.add(shown.world.home.makeFile(u"other.txt"_s));
    PanelWorld::settle();

    report();
    shown.world.lanes.runAll();

    QCOMPARE(shown.world.row(0).item().displayName, u"other.txt"_s);
    QCOMPARE(shown.icon(), shown.world.icons.color);
}

void FileRowView_kind_test::anAnswerAfterThePanelIsClosedIsThereWhenItOpens()
{
    UnknownItem shown(u"pictures/"_s);
    shown.world.panel.hide();

    shown.world.lanes.runAll();
    shown.world.panel.show();

    QCOMPARE(shown.icon(), shown.world.icons.folderColor);
}

QTEST_MAIN(FileRowView_kind_test)
#include "FileRowView_kind_test.moc"
