// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

/// Something that happens while a lane has the file in hand.
using Happens = std::function<void(StoreWorld& world, const LapsaItem& item)>;

enum class Moment
{
    /// The lane has not begun.
    BeforeTheWork,
    /// The lane is done, but the store has not heard of it.
    BeforeTheReport,
};

void nothing(StoreWorld&, const LapsaItem&) {}

void locked(StoreWorld& world, const LapsaItem& item)
{
    world.store().lockItem(item.id);
}

void lockedAndUnlocked(StoreWorld& world, const LapsaItem& item)
{
    world.store().toggleLock(item);
    world.store().toggleLock(item);
}

void givenTime(StoreWorld& world, const LapsaItem& item)
{
    world.store().updateExpiration(item, 30);
}

void takenOffTheList(StoreWorld& world, const LapsaItem& item)
{
    world.store().removeFromList(item);
}

void addedAgain(StoreWorld& world, const LapsaItem& item)
{
    world.store().addFiles({item.url()});
}

void paused(StoreWorld& world, const LapsaItem&)
{
    LapsaSettings settings = world.store().settings();
    settings.pauseAllCountdowns = true;
    world.store().setSettings(settings);
}

void nothingKept(StoreWorld& world, const LapsaItem&)
{
    LapsaSettings settings = world.store().settings();
    settings.useRecoveryWindow = false;
    settings.useTrash = false;
    world.store().setSettings(settings);
}

void secondPass(StoreWorld& world, const LapsaItem&)
{
    world.store().deleteExpiredItems();
}

void fileGone(StoreWorld&, const LapsaItem& item)
{
    QFile::remove(item.path);
}

void fileReplaced(StoreWorld& world, const LapsaItem& item)
{
    QFile::remove(item.path);
    world.home.makeFile(u"a.txt"_s, "another one");
}

void deletedByHand(StoreWorld& world, const LapsaItem& item)
{
    world.store().deleteNow(item);
}

} // namespace

/// What may happen to an item and its file while a lane has them in hand.
class LapsaStore_between_test final : public QObject
{
    Q_OBJECT

private slots:

    void whatHappensMeanwhileDecides_data()
    {
        QTest::addColumn<Happens>("happens");
        QTest::addColumn<Moment>("moment");
        QTest::addColumn<bool>("fileStays");
        QTest::addColumn<bool>("listed");
        QTest::addColumn<int>("records");

        using enum Moment;
        QTest::newRow("nothing") << Happens(nothing) << BeforeTheWork << false << false << 1;
        QTest::newRow("locked, before") << Happens(locked) << BeforeTheWork << true << true << 0;
        QTest::newRow("locked, after") << Happens(locked) << BeforeTheReport << true << true << 0;
        QTest::newRow("given time, before") << Happens(givenTime) << BeforeTheWork << true << true << 0;
        QTest::newRow("given time, after") << Happens(givenTime) << BeforeTheReport << true << true << 0;
        QTest::newRow("off the list, before") << Happens(takenOffTheList) << BeforeTheWork << true << false << 0;
        QTest::newRow("off the list, after") << Happens(takenOffTheList) << BeforeTheReport << true << false << 0;
        QTest::newRow("added again, before") << Happens(addedAgain) << BeforeTheWork << true << true << 0;
        QTest::newRow("added again, after") << Happens(addedAgain) << BeforeTheReport << true << true << 0;
        QTest::newRow("paused, before") << Happens(paused) << BeforeTheWork << true << true << 0;
        QTest::newRow("paused, after") << Happens(paused) << BeforeTheReport << true << true << 0;
        QTest::newRow("another way, before") << Happens(nothingKept) << BeforeTheWork << false << false << 0;
        QTest::newRow("another way, after") << Happens(nothingKept) << BeforeTheReport << false << false << 1;
        QTest::newRow("a second pass, before") << Happens(secondPass) << BeforeTheWork << false << false << 1;
        QTest::newRow("a second pass, after") << Happens(secondPass) << BeforeTheReport << false << false << 1;
        QTest::newRow("the file gone") << Happens(fileGone) << BeforeTheWork << false << false << 0;
        QTest::newRow("the file replaced") << Happens(fileReplaced) << BeforeTheWork << false << false << 1;
        QTest::newRow("by hand as well, before") << Happens(deletedByHand) << BeforeTheWork << false << false << 1;
        QTest::newRow("by hand as well, after") << Happens(deletedByHand) << BeforeTheReport << false << false << 1;
        QTest::newRow("locked and unlocked") << Happens(lockedAndUnlocked) << BeforeTheWork << false << false << 1;
    }

    void whatHappensMeanwhileDecides()
    {
        QFETCH(const Happens, happens);
        QFETCH(const Moment, moment);
        QFETCH(const bool, fileStays);
        QFETCH(const bool, listed);
        QFETCH(const int, records);
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.time.advance(1min);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);

        world.store().deleteExpiredItems();
        const Lanes::Report report = moment == Moment::BeforeTheReport ? world.lanes.workOnNext() : Lanes::Report();
        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
        happens(world, item);
        if (report) {
            report();
        }
        world.lanes.runAll();
        world.time.settle();
        world.lanes.runAll();

        QCOMPARE(QFile::exists(item.path), fileStays);
        QCOMPARE(world.listedNames(), listed ? QStringList{u"a.txt"_s} : QStringList());
        QCOMPARE(world.store().recoveryItems().size(), records);
        QCOMPARE(world.home.names(recoveryFolder).size(), records);
        QVERIFY(!world.store().isWorking());
    }

    void aLockInsideAFolderKeepsTheFolder_data()
    {
        QTest::addColumn<bool>("byHand");

        QTest::newRow("in a pass") << false;
        QTest::newRow("by hand") << true;
    }

    void aLockInsideAFolderKeepsTheFolder()
    {
        QFETCH(const bool, byHand);
        StoreWorld world;
        const LapsaItem inside = world.add(world.home.makeFile(u"folder/inside.txt"_s), 60);
        const LapsaItem folder = world.add(world.home.path(u"folder"_s), 1);
        world.time.advance(1min);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        byHand ? world.store().deleteNow(folder) : world.store().deleteExpiredItems();

        world.store().lockItem(inside.id);
        world.lanes.runAll();
        world.time.settle();
        world.lanes.runAll();

        QVERIFY(QFile::exists(inside.path));
        QCOMPARE(world.listedNames(), (QStringList{u"inside.txt"_s, u"folder"_s}));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aLockInsideByALinkKeepsTheFolder()
    {
        StoreWorld world;
        world.home.makeFile(u"folder/inside.txt"_s);
        QVERIFY(QFile::link(world.home.path(u"folder"_s), world.home.path(u"link"_s)));
        const LapsaItem inside = world.add(world.home.path(u"link/inside.txt"_s), 60);
        world.add(world.home.path(u"folder"_s), 1);
        world.time.advance(1min);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.store().deleteExpiredItems();

        world.store().lockItem(inside.id);
        world.lanes.runAll();
        world.time.settle();
        world.lanes.runAll();

        QVERIFY(QFile::exists(inside.path));
        QCOMPARE(world.listedNames().size(), 2);
    }

    void nothingIsHandedOverTwice()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.time.advance(1min);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.store().deleteExpiredItems();
        const std::size_t jobs = world.lanes.waiting();

        world.store().deleteExpiredItems();

        QVERIFY(jobs > 0);
        QCOMPARE(world.lanes.waiting(), jobs);
    }

    void whatRunsOutMeanwhileBelongsToTheNextPass()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.add(world.home.makeFile(u"b.txt"_s), 2);
        world.time.advance(1min);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.store().deleteExpiredItems();
        world.time.advance(1min);

        world.lanes.runAll();
        QCOMPARE(world.listedNames(), QStringList{u"b.txt"_s});

        world.store().deleteExpiredItems();
        world.lanes.runAll();
        QVERIFY(world.listedNames().isEmpty());
    }

    void onePassLeavesTheListInOneStep()
    {
        StoreWorld world;
        for (int number = 0; number < 40; ++number) {
            world.add(world.home.makeFile(QString::number(number)), 1);
        }
        world.time.advance(1min);
        QSet<qsizetype> lengths;
        connect(&world.store(), &LapsaStore::willChange, this, [&] { lengths.insert(world.store().items().size()); });
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);

        world.store().deleteExpiredItems();
        world.lanes.runAll();

        QVERIFY(world.listedNames().isEmpty());
        QCOMPARE(lengths, QSet<qsizetype>{40});
        QCOMPARE(world.store().recoveryItems().size(), 40);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_between_test)
#include "LapsaStore_between_test.moc"
