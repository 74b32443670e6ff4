// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "JSONEncoder.h"
#include "PanelWorld.h"
#include "RowIconButton.h"

#include <QApplication>
#include <QTest>

#include <memory>
#include <tuple>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class FileListView_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { test::PanelWorld::setUpApplication(); }

    void ofAHundredThousandItemsOnlyTheRowsOnScreenExist();
    void scrollingToTheEndShowsTheLastItemAndMakesNoMoreRows();
    void aTickRepaintsOnlyTheRowsThatReadDifferently();
    void rowsKeepTheirWidgetWhenTheListChangesAboveThem();
    void whatIsSeenStaysInItsPlaceWhenItemsAboveItGo();
    void theArrowsMoveFromRowToRowAndScroll();
    void tabGoesThroughTheRowsButtonsAndLeavesTheList();
    void leftAndRightGoThroughTheRow();
    void theFocusedRowKeepsItsFocusWhileScrolledAway();
    void whenTheFocusedItemGoesTheFocusFallsOnTheRowInItsPlace();
    void twoItemsWithOneIdAreTwoRows();
    void theScrollBarStandsInTheMargin();
};

namespace {

using test::PanelWorld;

constexpr int rowSpacing = 10;

QString nameOf(int index)
{
    return u"file %1.txt"_s.arg(index);
}

/// A panel over a store that starts with that many items on record; their files do not exist.
class ManyItems final
{
public:
    explicit ManyItems(int count)
    {
        QList<LapsaItem> items;
        for (int index = 0; index < count; ++index) {
            items.push_back({.id = u"item-%1"_s.arg(index),
                             .path = u"/nowhere/"_s + nameOf(index),
                             .displayName = nameOf(index),
                             .addedAt = world.time.now(),
                             .expiresAt = world.time.now() + 600s + std::chrono::seconds(index % 3 * 20)});
        }
        world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
        world.start();
        panel = std::make_unique<LapsaPanelView>(
            LapsaPanelView::Environment{world.store(), world.time, world.time, icons}, [] {});
        panel->show();
        panel->activateWindow();
        std::ignore = QTest::qWaitForWindowActive(panel.get());
        PanelWorld::settle();
    }

    [[nodiscard]] FileListView& list() const { return *panel->findChild<FileListView*>(); }

    [[nodiscard]] FileRowView& row(qsizetype index) const { return *list().visibleRows().at(index); }

    [[nodiscard]] QStringList shown() const
    {
        QStringList names;
        for (const FileRowView* const row : list().visibleRows()) {
            names.push_back(row->item().displayName);
        }
        return names;
    }

    [[nodiscard]] qsizetype rowWidgets() const { return panel->findChildren<FileRowView*>().size(); }

    void remove(int index)
    {
        world.store().removeFromList(world.item(u"/nowhere/"_s + nameOf(index)));
        PanelWorld::settle();
    }

    test::StoreWorld world{false};
    test::RecordingIcons icons;
    std::unique_ptr<LapsaPanelView> panel;
};

/// Counts the paint events of widgets.
class PaintCounter final : public QObject
{
public:
    explicit PaintCounter(const QList<QWidget*>& widgets)
    {
        for (QWidget* const widget : widgets) {
            widget->installEventFilter(this);
        }
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++painted[watched];
        }
        return false;
    }

    QHash<QObject*, int> painted;
};

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

void FileListView_test::ofAHundredThousandItemsOnlyTheRowsOnScreenExist()
{
    const ManyItems many(100000);

    const int onScreen = many.list().height() / pitch() + 2;
    QVERIFY(many.rowWidgets() > 0);
    QVERIFY(many.rowWidgets() <= onScreen);
    QCOMPARE(many.shown().first(), nameOf(0));
    QCOMPARE(many.list().scrollBar().maximum(), 100000 * pitch() - rowSpacing - many.list().height());
}

void FileListView_test::scrollingToTheEndShowsTheLastItemAndMakesNoMoreRows()
{
    const ManyItems many(100000);

    many.list().scrollBar().setValue(50000 * pitch());
    QCOMPARE(many.shown().first(), nameOf(50000));
    many.list().scrollBar().setValue(many.list().scrollBar().maximum());

    QCOMPARE(many.shown().last(), nameOf(99999));
    QVERIFY(many.rowWidgets() <= many.list().height() / pitch() + 2);
}

void FileListView_test::aTickRepaintsOnlyTheRowsThatReadDifferently()
{
    ManyItems many(100000);
    QList<QWidget*> labels;
    for (FileRowView* const row : many.list().visibleRows()) {
        labels.push_back(row->findChildren<ElidedLabel*>().at(1));
    }
    QVERIFY(labels.size() >= 3);
    PanelWorld::settle();

    // Every third item loses a minute with this second, the others do not.
    const PaintCounter counter(labels);
    many.world.time.advance(1s);
    PanelWorld::settle();
    QCOMPARE(counter.painted.size(), 0); // 600 seconds and 599 are both ten minutes
    many.world.time.advance(19s);
    PanelWorld::settle();

    QCOMPARE(counter.painted.value(labels.at(0)), 0);
    QCOMPARE(counter.painted.value(labels.at(1)), 1); // 620 seconds have become 600
    QCOMPARE(counter.painted.value(labels.at(2)), 0);
}

void FileListView_test::rowsKeepTheirWidgetWhenTheListChangesAboveThem()
{
    ManyItems many(10);
    FileRowView* const second = &many.row(1);
    QCOMPARE(second->item().displayName, nameOf(1));

    many.remove(0);

    QCOMPARE(&many.row(0), second);
    QCOMPARE(second->item().displayName, nameOf(1));
    QCOMPARE(second->y(), 0);
}

void FileListView_test::whatIsSeenStaysInItsPlaceWhenItemsAboveItGo()
{
    ManyItems many(100);
    many.list().scrollBar().setValue(50 * pitch() + 7);
    const int before = many.row(0).y();

    many.remove(3);
    many.remove(5);

    QCOMPARE(many.shown().first(), nameOf(50));
    QCOMPARE(many.row(0).y(), before);
}

void FileListView_test::theArrowsMoveFromRowToRowAndScroll()
{
    const ManyItems many(100000);
    many.row(0).setFocus(Qt::TabFocusReason);

    for (int step = 0; step < 7; ++step) {
        press(Qt::Key_Down);
    }
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, nameOf(7));
    QVERIFY(many.list().rect().contains(QApplication::focusWidget()->geometry()));
    press(Qt::Key_Up);
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, nameOf(6));
    press(Qt::Key_End);
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, nameOf(99999));
    press(Qt::Key_Home);
    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, nameOf(0));
}

void FileListView_test::tabGoesThroughTheRowsButtonsAndLeavesTheList()
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

void FileListView_test::leftAndRightGoThroughTheRow()
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

void FileListView_test::theFocusedRowKeepsItsFocusWhileScrolledAway()
{
    const ManyItems many(1000);
    many.row(1).setFocus(Qt::TabFocusReason);
    const QWidget* const focused = QApplication::focusWidget();

    many.list().scrollBar().setValue(500 * pitch());
    QCOMPARE(QApplication::focusWidget(), focused);
    QCOMPARE(many.shown().first(), nameOf(500));
    press(Qt::Key_Down);

    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget())->item().displayName, nameOf(2));
    QVERIFY(many.list().rect().contains(QApplication::focusWidget()->geometry()));
}

void FileListView_test::whenTheFocusedItemGoesTheFocusFallsOnTheRowInItsPlace()
{
    ManyItems many(10);
    RowIconButton* const trash = many.row(1).findChildren<RowIconButton*>().at(3);
    trash->setFocus(Qt::TabFocusReason);

    many.remove(1);

    QCOMPARE(qobject_cast<FileRowView*>(QApplication::focusWidget()), &many.row(1));
    QCOMPARE(many.row(1).item().displayName, nameOf(2));
    press(Qt::Key_Space);
    QCOMPARE(many.world.store().items().size(), 9); // the key went to the row, not to its trash
}

void FileListView_test::twoItemsWithOneIdAreTwoRows()
{
    test::StoreWorld world(false);
    const LapsaItem item{.id = u"same"_s, .path = u"/a"_s, .displayName = u"a"_s, .addedAt = {}, .expiresAt = {}};
    LapsaItem other = item;
    other.displayName = u"b"_s;
    world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(QList<LapsaItem>{item, other}));
    world.start();
    test::RecordingIcons icons;
    LapsaPanelView panel({world.store(), world.time, world.time, icons}, [] {});
    panel.show();
    PanelWorld::settle();

    const auto rows = panel.findChild<FileListView*>()->visibleRows();
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(0)->item().displayName, u"a"_s);
    QCOMPARE(rows.at(1)->item().displayName, u"b"_s);
}

void FileListView_test::theScrollBarStandsInTheMargin()
{
    const ManyItems many(100);

    const QRect bar = many.list().scrollBar().geometry();
    QVERIFY(bar.left() > many.list().geometry().right());
    QVERIFY(bar.right() < many.panel->width());
    QCOMPARE(many.row(0).width(), many.list().width());
}

QTEST_MAIN(FileListView_test)
#include "FileListView_test.moc"
