// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "ManyItems.h"

#include <QApplication>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    PanelWorld::settle();
}

} // namespace

/// Several rows at once.
class FileListView_selection_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void clicksWithControlAndShiftSelect()
    {
        const ManyItems many(20);

        QTest::mouseClick(&many.row(0), Qt::LeftButton, Qt::ControlModifier);
        QTest::mouseClick(&many.row(2), Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(many.list().selectedIds(), (QSet<QString>{u"item-0"_s, u"item-2"_s}));
        QVERIFY(many.row(0).isSelected() && !many.row(1).isSelected());
        QTest::mouseClick(&many.row(0), Qt::LeftButton, Qt::ShiftModifier);
        QCOMPARE(many.list().selectedIds().size(), 3);
        QTest::mouseClick(&many.row(1), Qt::LeftButton);

        QVERIFY(many.list().selectedIds().isEmpty());
    }

    void theKeyboardSelects()
    {
        const ManyItems many(20);
        many.row(0).setFocus(Qt::TabFocusReason);

        press(Qt::Key_Down, Qt::ShiftModifier);
        press(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(many.list().selectedIds().size(), 3);
        press(Qt::Key_Down, Qt::ControlModifier);
        press(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(many.list().selectedIds().size(), 4);
        press(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(many.list().selectedIds().size(), 20);
        press(Qt::Key_Escape);

        QVERIFY(many.list().selectedIds().isEmpty());
    }

    void theMenuActsOnAllSelectedRowsInOneChange()
    {
        ManyItems many(100000);
        press(Qt::Key_A, Qt::ControlModifier);
        QMenu menu;
        many.list().fillSelectionMenu(menu);
        QCOMPARE(menu.actions().at(0)->text(), u"Change timer of 100,000 items"_s);
        QCOMPARE(menu.actions().at(1)->text(), u"Lock 100,000 items"_s);
        const QSignalSpy announced(&many.world.store(), &LapsaStore::willChange);

        menu.actions().at(1)->trigger();
        QVERIFY(many.world.store().items().last().locked);
        menu.actions().at(2)->trigger();

        QCOMPARE(announced.size(), 2);
        QVERIFY(many.world.store().items().isEmpty());
    }

    void theMenuJumpsToWhatExpiresNext()
    {
        const ManyItems many(1000, [](int index) { return std::chrono::seconds(index == 700 ? 60 : 600 + index); });
        QMenu menu;
        emit many.row(0).menuFilled(menu);
        QCOMPARE(menu.actions().last()->text(), u"Go to what expires next"_s);

        menu.actions().last()->trigger();
        PanelWorld::settle();

        QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(700));
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FileListView_selection_test)
#include "FileListView_selection_test.moc"
