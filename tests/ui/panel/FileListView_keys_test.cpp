// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "ManyItems.h"
#include "PanelWorld.h"
#include "RowIconButton.h"

#include <QApplication>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// The keyboard on the list, and where its focus is.
class FileListView_keys_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void theArrowsMoveFromRowToRowAndScroll();
    void tabGoesThroughTheRowsButtonsAndLeavesTheList();
    void leftAndRightGoThroughTheRow();
    void theFocusedRowKeepsItsFocusWhileScrolledAway();
    void whenTheFocusedItemGoesTheFocusFallsOnTheRowInItsPlace();
};

namespace {

using test::ManyItems;
using test::PanelWorld;

constexpr int rowSpacing = 10;

int pitch()
{
    return FileRowView::rowHeight() + rowSpacing;
}

void press(Qt::Key key)
{
    QTest::keyClick(QApplication::focusWidget(), key);
    PanelWorld::settle();
}

} // namespace

void FileListView_keys_test::theArrowsMoveFromRowToRowAndScroll()
{
    const ManyItems many(100000);
    many.row(0).setFocus(Qt::TabFocusReason);

    for (int step = 0; step < 7; ++step) {
        press(Qt::Key_Down);
    }
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(7));
    QVERIFY(many.list().rect().contains(QApplication::focusWidget()->geometry()));
    press(Qt::Key_Up);
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(6));
    press(Qt::Key_End);
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(99999));
    press(Qt::Key_Home);
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(0));
}

void FileListView_keys_test::tabGoesThroughTheRowsButtonsAndLeavesTheList()
{
    const ManyItems many(10);
    many.row(0).setFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    QStringList stops;

    for (int stop = 0; stop < 4; ++stop) {
        press(Qt::Key_Tab);
        stops.push_back(QApplication::focusWidget()->accessibleName());
        QCOMPARE(QApplication::focusWidget()->parentWidget(), static_cast<QWidget*>(&many.row(1)));
    }
    press(Qt::Key_Tab);

    QCOMPARE(stops, (QStringList{u"Change timer"_s, u"Lock"_s, u"Remove from list"_s, u"Delete now"_s}));
    QVERIFY(!many.list().isAncestorOf(QApplication::focusWidget()));
}

void FileListView_keys_test::leftAndRightGoThroughTheRow()
{
    const ManyItems many(3);
    many.row(1).setFocus(Qt::TabFocusReason);

    press(Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), u"Change timer"_s);
    press(Qt::Key_Right);
    QCOMPARE(QApplication::focusWidget()->accessibleName(), u"Lock"_s);
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&many.row(1)));
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    QCOMPARE(QApplication::focusWidget(), static_cast<QWidget*>(&many.row(2)));
}

void FileListView_keys_test::theFocusedRowKeepsItsFocusWhileScrolledAway()
{
    const ManyItems many(1000);
    many.row(1).setFocus(Qt::TabFocusReason);
    const QWidget* const focused = QApplication::focusWidget();

    many.list().scrollBar().setValue(500 * pitch());
    QCOMPARE(QApplication::focusWidget(), focused);
    QCOMPARE(many.shown().first(), ManyItems::nameOf(500));
    press(Qt::Key_Down);

    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(2));
    QVERIFY(many.list().rect().contains(QApplication::focusWidget()->geometry()));
}

void FileListView_keys_test::whenTheFocusedItemGoesTheFocusFallsOnTheRowInItsPlace()
{
    ManyItems many(10);
    RowIconButton* const trash = many.row(1).findChildren<RowIconButton*>().at(3);
    trash->setFocus(Qt::TabFocusReason);

    many.remove(1);

    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget()), &many.row(1));
    QCOMPARE(many.row(1).item().displayName, ManyItems::nameOf(2));
    press(Qt::Key_Space);
    QCOMPARE(many.world.store().items().size(), 9); // the key went to the row, not to its trash
}

QTEST_MAIN(FileListView_keys_test)
#include "FileListView_keys_test.moc"
