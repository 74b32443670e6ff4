// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "JSONEncoder.h"
#include "ManyItems.h"
#include "PanelWorld.h"
#include "RowIconButton.h"
#include "TextSize.h"

#include <QTest>

#include <chrono>

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
    void twoItemsWithOneIdAreTwoRows();
    void theScrollBarStandsInTheMargin();
    void theRowsFollowANewTextSize();
};

namespace {

using test::ManyItems;
using test::PanelWorld;

constexpr int rowSpacing = 10;

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

} // namespace

void FileListView_test::ofAHundredThousandItemsOnlyTheRowsOnScreenExist()
{
    const ManyItems many(100000);

    const int onScreen = many.list().height() / pitch() + 2;
    QVERIFY(many.rowWidgets() > 0);
    QVERIFY(many.rowWidgets() <= onScreen);
    QCOMPARE(many.shown().first(), ManyItems::nameOf(0));
    QCOMPARE(many.list().scrollBar().maximum(), 100000 * pitch() - rowSpacing - many.list().height());
}

void FileListView_test::scrollingToTheEndShowsTheLastItemAndMakesNoMoreRows()
{
    const ManyItems many(100000);

    many.list().scrollBar().setValue(50000 * pitch());
    QCOMPARE(many.shown().first(), ManyItems::nameOf(50000));
    many.list().scrollBar().setValue(many.list().scrollBar().maximum());

    QCOMPARE(many.shown().last(), ManyItems::nameOf(99999));
    QVERIFY(many.rowWidgets() <= many.list().height() / pitch() + 2);
}

void FileListView_test::aTickRepaintsOnlyTheRowsThatReadDifferently()
{
    // Every third item is at the beginning of a minute.
    ManyItems many(100000, [](int index) { return 600s + std::chrono::seconds(index % 3 * 20); });
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
    QCOMPARE(second->item().displayName, ManyItems::nameOf(1));

    many.remove(0);

    QCOMPARE(&many.row(0), second);
    QCOMPARE(second->item().displayName, ManyItems::nameOf(1));
    QCOMPARE(second->y(), 0);
}

void FileListView_test::whatIsSeenStaysInItsPlaceWhenItemsAboveItGo()
{
    ManyItems many(100);
    many.list().scrollBar().setValue(50 * pitch() + 7);
    const int before = many.row(0).y();

    many.remove(3);
    many.remove(5);

    QCOMPARE(many.shown().first(), ManyItems::nameOf(50));
    QCOMPARE(many.row(0).y(), before);
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
    LapsaPanelView panel({world.store(), world.time, world.time, icons, world.kinds, world.store()}, [] {});
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

void FileListView_test::theRowsFollowANewTextSize()
{
    const ManyItems many(10);
    const int usual = many.row(0).height();
    const test::TextSize text(20);

    test::TextSize::tellWidgets();

    QVERIFY(FileRowView::rowHeight() > usual);
    QCOMPARE(many.row(0).height(), FileRowView::rowHeight());
    QCOMPARE(many.row(1).y(), pitch());
    QCOMPARE(many.list().scrollBar().maximum(), 10 * pitch() - rowSpacing - many.list().height());
    // The buttons stand below the text, which needs the whole width.
    const auto labels = many.row(0).findChildren<ElidedLabel*>();
    QVERIFY(many.row(0).findChildren<RowIconButton*>().first()->y() > labels.last()->geometry().bottom());
}

QTEST_MAIN(FileListView_test)
#include "FileListView_test.moc"
