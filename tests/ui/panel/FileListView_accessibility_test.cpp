// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileListView.h"
#include "FileRowView.h"
#include "ManyItems.h"
#include "PanelWorld.h"

#include <QAccessible>
#include <QApplication>
#include <QTest>

#include <algorithm>
#include <functional>

using namespace lapsa;
using namespace Qt::StringLiterals;

/// What a screen reader is told of the panel.
class FileListView_accessibility_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase();
    void everyItemIsToldInItsPlace();
    void readingThroughTheListKeepsFewItemsInMemory();
    void anItemStaysTheSameWhileOthersGo();
    void anItemOffScreenCanBeGivenTheFocus();
    void theListIsNamedAfterItsCount();
    void anEmptyListSaysSo_data();
    void anEmptyListSaysSo();
    void aRowsButtonsAreReachedFromIt();
};

namespace {

using test::ManyItems;
using test::PanelWorld;

QAccessibleInterface& told(QWidget& widget)
{
    return *QAccessible::queryAccessibleInterface(&widget);
}

void forEach(QAccessibleInterface& parent, const std::function<void(QAccessibleInterface&)>& visit)
{
    visit(parent);
    for (int index = 0; index < parent.childCount(); ++index) {
        forEach(*parent.child(index), visit);
    }
}

} // namespace

void FileListView_accessibility_test::initTestCase()
{
    PanelWorld::setUpApplication();
    QAccessible::setActive(true);
}

void FileListView_accessibility_test::everyItemIsToldInItsPlace()
{
    const ManyItems many(100000);

    QCOMPARE(told(many.list()).role(), QAccessible::List);
    QCOMPARE(told(many.list()).childCount(), 100000);
    for (const int index : {0, 2, 3, 50000, 99999}) {
        QAccessibleInterface* const item = told(many.list()).child(index);
        QCOMPARE(item->role(), QAccessible::ListItem);
        QCOMPARE(item->text(QAccessible::Name), ManyItems::nameOf(index));
        QCOMPARE(item->text(QAccessible::Description), u"1h 30min left"_s);
        QCOMPARE(told(many.list()).indexOfChild(item), index);
        QCOMPARE(item->parent(), &told(many.list()));
        QVERIFY(item->state().focusable);
        const int top = item->rect().top() - told(many.list()).rect().top();
        QCOMPARE(top, index * (FileRowView::rowHeight() + 10));
    }
    QVERIFY(!told(many.list()).child(0)->state().offscreen);
    QVERIFY(told(many.list()).child(99999)->state().offscreen);
    QVERIFY(told(many.list()).child(100000) == nullptr && told(many.list()).child(-1) == nullptr);
}

void FileListView_accessibility_test::readingThroughTheListKeepsFewItemsInMemory()
{
    const ManyItems many(100000);
    QList<QAccessible::Id> read;

    for (int index = 0; index < 20000; ++index) {
        QAccessibleInterface* const item = told(many.list()).child(index);
        QCOMPARE(item->text(QAccessible::Name), ManyItems::nameOf(index));
        read.push_back(QAccessible::uniqueId(item));
    }

    const auto kept =
        std::ranges::count_if(read, [](QAccessible::Id id) { return QAccessible::accessibleInterface(id) != nullptr; });
    QVERIFY2(kept < 1000, qPrintable(QString::number(kept)));
}

void FileListView_accessibility_test::anItemStaysTheSameWhileOthersGo()
{
    ManyItems many(100);
    QAccessibleInterface* const item = told(many.list()).child(50);
    QCOMPARE(told(many.list()).child(50), item); // asked for again, not made again

    many.remove(3);
    QCOMPARE(item->text(QAccessible::Name), ManyItems::nameOf(50));
    QCOMPARE(told(many.list()).indexOfChild(item), 49);
    QCOMPARE(told(many.list()).child(49), item);
    QVERIFY(item->isValid());
    many.remove(50);

    QVERIFY(!item->isValid());
    QCOMPARE(told(many.list()).childCount(), 98);
}

void FileListView_accessibility_test::anItemOffScreenCanBeGivenTheFocus()
{
    const ManyItems many(100000);

    told(many.list()).child(70000)->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());

    const auto* const row = qobject_cast<FileRowView*>(QApplication::focusWidget());
    QVERIFY(row != nullptr);
    QCOMPARE(row->item().displayName, ManyItems::nameOf(70000));
    QVERIFY(many.list().rect().contains(row->geometry()));
    QVERIFY(told(many.list()).child(70000)->state().focused);
}

void FileListView_accessibility_test::theListIsNamedAfterItsCount()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QCOMPARE(told(world.list()).text(QAccessible::Name), u"1 item present"_s);

    world.addItem(u"b.txt"_s);

    QCOMPARE(told(world.list()).text(QAccessible::Name), u"2 items present"_s);
    QCOMPARE(told(world.list()).text(QAccessible::Description), QString());
}

void FileListView_accessibility_test::anEmptyListSaysSo_data()
{
    QTest::addColumn<QByteArray>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QByteArray("en_US.UTF-8")
                             << u"Nothing here. Add a file or folder to start a countdown."_s;
    QTest::newRow("Italian") << QByteArray("it_IT.UTF-8")
                             << u"Niente qui. Aggiungi un file o una cartella per avviare un conto alla rovescia."_s;
}

void FileListView_accessibility_test::anEmptyListSaysSo()
{
    QFETCH(const QByteArray, locale);
    QFETCH(const QString, text);
    const test::Language language(locale.constData());
    PanelWorld world;
    QAccessibleInterface& list = told(world.list());

    QCOMPARE(list.childCount(), 1);
    QCOMPARE(list.child(0)->role(), QAccessible::StaticText);
    QCOMPARE(list.child(0)->text(QAccessible::Name), text);
    QCOMPARE(list.indexOfChild(list.child(0)), 0);
    QCOMPARE(list.text(QAccessible::Description), text);
    QVERIFY(list.state().focused);
}

void FileListView_accessibility_test::aRowsButtonsAreReachedFromIt()
{
    PanelWorld world;
    world.addItem(u"a.txt"_s);
    QStringList buttons;

    forEach(*told(world.list()).child(0), [&](QAccessibleInterface& child) {
        if (child.role() == QAccessible::Button) {
            buttons.push_back(child.text(QAccessible::Name));
        }
    });

    QCOMPARE(buttons, (QStringList{u"Change timer"_s, u"Lock"_s, u"Remove from list"_s, u"Delete now"_s}));
}

QTEST_MAIN(FileListView_accessibility_test)
#include "FileListView_accessibility_test.moc"
