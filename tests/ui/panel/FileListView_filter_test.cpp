// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "ListFilterField.h"
#include "ManyItems.h"

#include <QApplication>
#include <QLabel>
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

/// The list filtered by name.
class FileListView_filter_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { PanelWorld::setUpApplication(); }

    void typingFiltersAndEscapeShowsAllAgain()
    {
        const ManyItems many(1000);
        auto* const field = many.panel->findChild<ListFilterField*>();
        QVERIFY(field->isHidden());

        QTest::keyClicks(QApplication::focusWidget(), u"F"_s);
        QTest::keyClicks(QApplication::focusWidget(), u"ile 99"_s);
        PanelWorld::settle();
        QVERIFY(field->isVisible());
        QCOMPARE(many.shown().first(), ManyItems::nameOf(99));
        QCOMPARE(field->findChild<QLabel*>()->text(), u"11 of 1,000"_s);
        press(Qt::Key_Escape);

        QVERIFY(field->isHidden());
        QCOMPARE(many.shown().first(), ManyItems::nameOf(0));
        QVERIFY(many.panel->isVisible());
    }

    void controlFOpensTheFieldAndTheDownKeyLeadsToTheHits()
    {
        const ManyItems many(100);

        press(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), u"file 42"_s);
        press(Qt::Key_Down);

        QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, ManyItems::nameOf(42));
    }

    void escapeOnARowClosesTheFilterAndGoesNoFurther()
    {
        const ManyItems many(100);
        press(Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), u"file 42"_s);
        press(Qt::Key_Down);
        QKeyEvent first(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QKeyEvent second(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);

        QApplication::sendEvent(many.panel.get(), &first);
        QVERIFY(many.panel->findChild<ListFilterField*>()->isHidden());
        QApplication::sendEvent(many.panel.get(), &second);

        QVERIFY(first.isAccepted());
        QVERIFY(!second.isAccepted()); // it is the panel's window's
    }

    void whatTheFilterHidesIsNoLongerSelected()
    {
        ManyItems many(20);
        press(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(many.list().selectedIds().size(), 20);

        many.list().setFilter(u"file 7"_s);
        many.list().setFilter({});

        QCOMPARE(many.list().selectedIds(), QSet<QString>{u"item-7"_s});
    }

    void anItemThatGoesLeavesTheHits()
    {
        ManyItems many(20);
        many.list().setFilter(u"file 1"_s);

        many.remove(1);

        QCOMPARE(many.shown().first(), ManyItems::nameOf(10));
    }

    void theFilterGoesWithThePanel()
    {
        const ManyItems many(20);
        many.list().setFilter(u"7"_s);
        press(Qt::Key_F, Qt::ControlModifier);

        many.panel->hide();

        QVERIFY(many.panel->findChild<ListFilterField*>()->isHidden());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::FileListView_filter_test)
#include "FileListView_filter_test.moc"
