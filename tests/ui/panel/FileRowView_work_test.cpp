// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DeletionUndo.h"
#include "ElidedLabel.h"
#include "FileIconView.h"
#include "FileRowView.h"
#include "PanelAccessibility.h"
#include "PanelWorld.h"
#include "RowIconButton.h"
#include "TextSize.h"
#include "WorkBar.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Kind = ItemWork::Kind;

constexpr ItemWork moving{Kind::Moving, 43, 100};
constexpr ItemWork removing{Kind::Removing, 12400, 0};
constexpr ItemWork stopped{Kind::Stopped, 12400, 0};
constexpr ItemWork waiting{Kind::WaitingForDisk, 0, 0};

/// How often a row told that its description has changed.
int& descriptionsTold()
{
    static int told = 0;
    return told;
}

void note(QAccessibleEvent* event)
{
    descriptionsTold() += event->type() == QAccessible::DescriptionChanged ? 1 : 0;
}

/// One row by itself, with two hours left.
struct ShownRow
{
    ShownRow()
    {
        const LapsaItem item = world.add(world.home.makeFile(u"film.mkv"_s), 120);
        row.resize(382, FileRowView::rowHeight());
        row.setItem(item);
        row.setNow(world.time.now());
        row.show();
    }

    [[nodiscard]] ElidedLabel& label(qsizetype index) { return *row.findChildren<ElidedLabel*>().at(index); }

    [[nodiscard]] QString state() { return label(1).text(); }

    [[nodiscard]] WorkBar& bar() { return *row.findChild<WorkBar*>(); }

    test::StoreWorld world;
    test::RecordingIcons icons;
    DeletionUndo undo{world.store()};
    FileRowView row{{world.store(), icons, world.kinds, world.store(), undo}};
};

} // namespace

/// What a row shows while a lane works on its file.
class FileRowView_work_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        test::PanelWorld::setUpApplication();
        installPanelAccessibility();
    }

    void theWorkStandsInPlaceOfTheRemainingTime();
    void theWorkOfALockedItemIsNotOrange();
    void whatAStoppedRemovalLeftStandsThereWithoutABar();
    void theBarLiesOnTheLowerEdgeInsideTheCorners_data();
    void theBarLiesOnTheLowerEdgeInsideTheCorners();
    void nothingMovesWhenWorkBeginsAndEnds();
    void aRowThatWaitsForItsDiskIsFaintButItsButtonsAreNot();
    void theButtonsWorkDuringTheWork();
    void anotherItemInTheRowHasNoWorkYet();
    void aScreenReaderReadsTheWorkOfNow();
    void aScreenReaderIsToldOfTheBeginningAndTheEndOnly();
};

void FileRowView_work_test::theWorkStandsInPlaceOfTheRemainingTime()
{
    ShownRow shown;

    shown.row.setWork(moving);
    QCOMPARE(shown.state(), u"Moving… 43 %"_s);
    QVERIFY(shown.bar().isVisible());
    QCOMPARE(shown.bar().progress(), std::optional(0.43));

    shown.row.setWork(removing);
    QCOMPARE(shown.state(), u"Removing… 12,400 files"_s);
    QVERIFY(shown.bar().isVisible());
    QCOMPARE(shown.bar().progress(), std::nullopt);

    shown.row.setWork(waiting);
    QCOMPARE(shown.state(), u"Waiting for the disk"_s);
    QVERIFY(!shown.bar().isVisible());

    shown.row.setWork(std::nullopt);
    QCOMPARE(shown.state(), u"2h left"_s);
    QVERIFY(!shown.bar().isVisible());
}

void FileRowView_work_test::theWorkOfALockedItemIsNotOrange()
{
    ShownRow shown;
    LapsaItem locked = shown.row.item();
    locked.locked = true;
    shown.row.setItem(locked);
    QCOMPARE(shown.label(1).role(), ColorRole::Notice);

    shown.row.setWork(moving); // deleted by hand

    QCOMPARE(shown.state(), u"Moving… 43 %"_s);
    QCOMPARE(shown.label(1).role(), ColorRole::Secondary);
}

void FileRowView_work_test::whatAStoppedRemovalLeftStandsThereWithoutABar()
{
    ShownRow shown;
    shown.row.setWork(removing);
    LapsaItem locked = shown.row.item();
    locked.locked = true;
    shown.row.setItem(locked);

    shown.row.setWork(stopped);

    QCOMPARE(shown.state(), u"Stopped: 12,400 files left"_s);
    QCOMPARE(shown.label(1).role(), ColorRole::Notice);
    QVERIFY(!shown.bar().isVisible());
    QCOMPARE(shown.label(0).role(), ColorRole::Primary);
    const QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(&shown.row);
    QCOMPARE(row->text(QAccessible::Description), u"Stopped: 12,400 files left"_s);

    shown.row.setWork(std::nullopt);
    QCOMPARE(shown.state(), u"locked"_s);
}

void FileRowView_work_test::theBarLiesOnTheLowerEdgeInsideTheCorners_data()
{
    QTest::addColumn<double>("points");
    QTest::newRow("usual text") << 10.0;
    QTest::newRow("large text") << 20.0;
}

void FileRowView_work_test::theBarLiesOnTheLowerEdgeInsideTheCorners()
{
    QFETCH(const double, points);
    const test::TextSize size(points);
    ShownRow shown;
    shown.row.setWork(moving);

    const QRect bar = shown.bar().geometry();
    QCOMPARE(bar.height(), 3);
    QCOMPARE(bar.left(), 16);
    QCOMPARE(bar.right(), shown.row.width() - 16 - 1);
    QCOMPARE(bar.bottom(), shown.row.height() - 1 - 1);
    for (const QWidget* const child : shown.row.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        QVERIFY(child == &shown.bar() || !child->geometry().intersects(bar));
    }
}

void FileRowView_work_test::nothingMovesWhenWorkBeginsAndEnds()
{
    ShownRow shown;
    const auto places = [&shown] {
        QApplication::processEvents();
        QList<QRect> geometries{shown.row.geometry()};
        for (const QWidget* const child : shown.row.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            geometries.push_back(child->geometry());
        }
        return geometries;
    };
    const QList<QRect> before = places();

    for (const ItemWork& work : {moving, removing, waiting, stopped}) {
        shown.row.setWork(work);
        QCOMPARE(places(), before);
    }
    shown.row.setWork(std::nullopt);
    QCOMPARE(places(), before);
}

void FileRowView_work_test::aRowThatWaitsForItsDiskIsFaintButItsButtonsAreNot()
{
    ShownRow shown;
    const QImage before = shown.row.grab().toImage();
    const QPoint icon = shown.row.findChild<FileIconView*>()->geometry().center();
    const QRect button = shown.row.findChildren<RowIconButton*>().at(0)->geometry();

    shown.row.setWork(waiting);

    const QImage after = shown.row.grab().toImage();
    QCOMPARE(before.pixelColor(icon), shown.icons.color);
    QVERIFY(after.pixelColor(icon).green() > 80); // it was 0
    QCOMPARE(shown.label(0).role(), ColorRole::Secondary);
    int darkest = 255;
    for (int x = button.left(); x <= button.right(); ++x) {
        darkest = std::min(darkest, after.pixelColor(x, button.center().y()).lightness());
    }
    QVERIFY(darkest < 80);
    for (const RowIconButton* const each : shown.row.findChildren<RowIconButton*>()) {
        QVERIFY(each->isEnabled());
    }

    shown.row.setWork(std::nullopt);
    QCOMPARE(shown.row.grab().toImage(), before);
}

void FileRowView_work_test::theButtonsWorkDuringTheWork()
{
    ShownRow shown;
    shown.row.setWork(moving);
    const QSignalSpy sheet(&shown.row, &FileRowView::timeSheetRequested);

    QTest::mouseClick(&test::named<RowIconButton>(shown.row, u"Change timer"_s), Qt::LeftButton);
    QCOMPARE(sheet.size(), 1);
    QTest::mouseClick(&test::named<RowIconButton>(shown.row, u"Lock"_s), Qt::LeftButton);
    QVERIFY(shown.world.store().items().constFirst().locked);
    QTest::mouseClick(&test::named<RowIconButton>(shown.row, u"Remove from list"_s), Qt::LeftButton);
    QVERIFY(shown.world.store().items().isEmpty());
}

void FileRowView_work_test::anotherItemInTheRowHasNoWorkYet()
{
    ShownRow shown;
    shown.row.setWork(waiting);

    shown.row.setItem(shown.world.add(shown.world.home.makeFile(u"other.mkv"_s), 60));

    QCOMPARE(shown.state(), u"1h left"_s);
    QCOMPARE(shown.label(0).role(), ColorRole::Primary);
}

void FileRowView_work_test::aScreenReaderReadsTheWorkOfNow()
{
    ShownRow shown;
    const QAccessibleInterface* const row = QAccessible::queryAccessibleInterface(&shown.row);
    for (int percent = 0; percent <= 100; percent += 20) {
        shown.row.setWork(ItemWork{Kind::Moving, percent, 100});
        QCOMPARE(row->text(QAccessible::Description), u"Moving… %1 %"_s.arg(percent));
    }
}

void FileRowView_work_test::aScreenReaderIsToldOfTheBeginningAndTheEndOnly()
{
    QAccessible::setActive(true);
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    ShownRow shown;
    QAccessible::installUpdateHandler(note);
    descriptionsTold() = 0;

    for (int percent = 0; percent <= 100; ++percent) {
        shown.row.setWork(ItemWork{Kind::Moving, percent, 100});
    }
    QCOMPARE(descriptionsTold(), 1);
    shown.row.setWork(waiting);
    QCOMPARE(descriptionsTold(), 2);
    shown.row.setWork(stopped);
    QCOMPARE(descriptionsTold(), 3);
    shown.row.setWork(std::nullopt);
    QCOMPARE(descriptionsTold(), 4);
    QAccessible::installUpdateHandler(nullptr);
}

QTEST_MAIN(FileRowView_work_test)
#include "FileRowView_work_test.moc"
