// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ElidedLabel.h"
#include "FileListView.h"
#include "FileRowView.h"
#include "PanelWorld.h"

#include <QAccessible>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using test::PanelWorld;
using Kind = ItemWork::Kind;

/// What was said by itself, since it was asked last.
QStringList& said()
{
    static QStringList texts;
    return texts;
}

void note(QAccessibleEvent* event)
{
    QAccessibleInterface* const source = event->accessibleInterface();
    if (event->type() == QAccessible::ObjectShow && source->role() == QAccessible::Notification) {
        said().push_back(source->text(QAccessible::Name));
    }
}

/// The panel with one item, on which a lane begins to work.
struct WorkedPanel
{
    WorkedPanel() { work(0); }

    /// The lane has come this far.
    void work(int percent) { world.work.works.insert(item.id, ItemWork{Kind::Moving, percent, 100}); }

    /// The work begins or ends, and everybody is told.
    void setWorking(bool working)
    {
        world.work.working = working;
        if (!working) {
            world.work.works.clear();
        }
        emit world.store().willChange();
        PanelWorld::settle();
    }

    [[nodiscard]] QString state() { return world.row(0).findChildren<ElidedLabel*>().at(1)->text(); }

    PanelWorld world;
    LapsaItem item = world.addItem(u"film.mkv"_s);
};

} // namespace

/// How the panel follows what the lanes do.
class LapsaPanelView_work_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        PanelWorld::setUpApplication();
        QAccessible::setActive(true);
        QAccessible::installUpdateHandler(note);
    }

    void workIsSeenWhenItBeginsAndUntilItEnds();
    void itsRowIsRefreshedFourTimesASecond();
    void thereIsATimerOnlyWhileThereIsWorkOnTheScreen();
    void anEndOfWhichNobodyToldIsSeenTheNextSecond();
    void theWorkStaysWithItsItem();
    void anItemWithoutARowTellsItsWork();
    void workIsAnnouncedNowAndThen();
};

void LapsaPanelView_work_test::workIsSeenWhenItBeginsAndUntilItEnds()
{
    WorkedPanel panel;

    panel.setWorking(true);
    QCOMPARE(panel.state(), u"Moving… 0 %"_s);
    panel.setWorking(false);

    QCOMPARE(panel.state(), u"2h left"_s);
}

void LapsaPanelView_work_test::itsRowIsRefreshedFourTimesASecond()
{
    WorkedPanel panel;
    panel.setWorking(true);

    for (int quarter = 1; quarter <= 3; ++quarter) {
        panel.work(quarter);
        panel.world.time.advance(250ms);
        QCOMPARE(panel.state(), u"Moving… %1 %"_s.arg(quarter));
    }
}

void LapsaPanelView_work_test::thereIsATimerOnlyWhileThereIsWorkOnTheScreen()
{
    WorkedPanel panel;
    panel.world.letSavesPass();
    const std::size_t idle = panel.world.time.waitingTasks();

    panel.setWorking(true);
    QCOMPARE(panel.world.time.waitingTasks(), idle + 1);
    panel.setWorking(true);
    QCOMPARE(panel.world.time.waitingTasks(), idle + 1);
    panel.setWorking(false);
    QCOMPARE(panel.world.time.waitingTasks(), idle);

    panel.setWorking(true);
    panel.world.panel.hide();
    QCOMPARE(panel.world.time.waitingTasks(), idle - 1); // the countdown rests as well
    panel.work(70);
    panel.world.panel.show();
    QCOMPARE(panel.world.time.waitingTasks(), idle + 1);
    QCOMPARE(panel.state(), u"Moving… 70 %"_s);
}

void LapsaPanelView_work_test::anEndOfWhichNobodyToldIsSeenTheNextSecond()
{
    WorkedPanel panel;
    panel.world.letSavesPass();
    const std::size_t idle = panel.world.time.waitingTasks();
    panel.setWorking(true);

    panel.world.work.working = false;
    panel.world.work.works.clear();
    panel.world.time.advance(1s);

    QCOMPARE(panel.state(), u"2h left"_s);
    QCOMPARE(panel.world.time.waitingTasks(), idle);
}

void LapsaPanelView_work_test::theWorkStaysWithItsItem()
{
    WorkedPanel panel;
    const LapsaItem other = panel.world.addItem(u"other.mkv"_s);
    panel.world.work.works = {{other.id, {Kind::WaitingForDisk, 0, 0}}};
    panel.setWorking(true);

    panel.world.store().removeFromList(panel.item);
    PanelWorld::settle();

    QCOMPARE(panel.world.row(0).item().id, other.id);
    QCOMPARE(panel.state(), u"Waiting for the disk"_s);
}

void LapsaPanelView_work_test::anItemWithoutARowTellsItsWork()
{
    WorkedPanel panel;
    LapsaItem last;
    for (int number = 0; number < 20; ++number) {
        last = panel.world.addItem(u"%1.txt"_s.arg(number));
    }
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&panel.world.list());
    QCOMPARE(list->child(20)->text(QAccessible::Description), u"2h left"_s);

    panel.world.work.works.insert(last.id, {Kind::Removing, 1, 0});

    QCOMPARE(list->child(20)->text(QAccessible::Description), u"Removing… 1 file"_s);
}

void LapsaPanelView_work_test::workIsAnnouncedNowAndThen()
{
    if (!QAccessible::isActive()) {
        QSKIP("without a screen there is no screen reader"); // it runs on a display as well
    }
    WorkedPanel panel;
    said().clear();
    panel.setWorking(true);

    for (int percent = 0; percent <= 30; ++percent) {
        panel.work(percent);
        panel.world.time.advance(1s);
    }

    QCOMPARE(said(), (QStringList{u"“film.mkv”: Moving… 0 %"_s, u"“film.mkv”: Moving… 25 %"_s}));
}

QTEST_MAIN(LapsaPanelView_work_test)
#include "LapsaPanelView_work_test.moc"
