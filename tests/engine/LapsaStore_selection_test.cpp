// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

/// What is done with several items at once.
using Act = std::function<void(LapsaStore& store, const QSet<QString>& ids)>;

void lock(LapsaStore& store, const QSet<QString>& ids)
{
    store.lockItems(ids);
}

void unlock(LapsaStore& store, const QSet<QString>& ids)
{
    store.unlockItems(ids);
}

void giveAnHour(LapsaStore& store, const QSet<QString>& ids)
{
    store.updateExpirations(ids, 60);
}

void takeOff(LapsaStore& store, const QSet<QString>& ids)
{
    store.removeItemsFromList(ids);
}

} // namespace

/// Operations on many items at once.
class LapsaStore_selection_test final : public QObject
{
    Q_OBJECT

private slots:

    void manyAreOneAnnouncementAndOneSave_data()
    {
        QTest::addColumn<Act>("act");
        QTest::newRow("lock") << Act(lock);
        QTest::newRow("unlock") << Act(unlock);
        QTest::newRow("time") << Act(giveAnHour);
        QTest::newRow("off the list") << Act(takeOff);
    }

    void manyAreOneAnnouncementAndOneSave()
    {
        QFETCH(const Act, act);
        StoreWorld world;
        QSet<QString> ids;
        for (int number = 0; number < 50; ++number) {
            ids.insert(world.add(world.home.makeFile(u"%1.txt"_s.arg(number))).id);
        }
        world.letSavesPass();
        QFile::remove(world.home.dataPath(u"state.json"_s));
        const QSignalSpy announced(&world.store(), &LapsaStore::willChange);

        act(world.store(), ids);

        QCOMPARE(announced.size(), 1);
        world.letSavesPass();
        QVERIFY(!world.home.dataFile(u"state.json"_s).isNull());
    }

    void idsThatNobodyHasChangeNothing_data() { manyAreOneAnnouncementAndOneSave_data(); }

    void idsThatNobodyHasChangeNothing()
    {
        QFETCH(const Act, act);
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.letSavesPass();
        const QSignalSpy announced(&world.store(), &LapsaStore::willChange);

        act(world.store(), {u"nobody"_s});

        QCOMPARE(announced.size(), 0);
        QCOMPARE(world.item(item.path), item);
    }

    void onlyTheNamedItemsAreChanged()
    {
        StoreWorld world;
        const LapsaItem one = world.add(world.home.makeFile(u"one.txt"_s));
        const LapsaItem two = world.add(world.home.makeFile(u"two.txt"_s));
        const LapsaItem three = world.add(world.home.makeFile(u"three.txt"_s));

        world.store().lockItems({one.id, three.id});
        QVERIFY(world.item(one.path).locked && world.item(three.path).locked && !world.item(two.path).locked);
        world.store().unlockItems({one.id});
        QVERIFY(!world.item(one.path).locked && world.item(three.path).locked);
        world.store().updateExpirations({one.id, two.id}, 60);

        QCOMPARE(world.item(one.path).expiresAt, world.time.now() + 60min);
        QCOMPARE(world.item(two.path).expiresAt, world.time.now() + 60min);
        QCOMPARE(world.item(three.path).expiresAt, three.expiresAt);
        world.store().removeItemsFromList({one.id, three.id});
        QCOMPARE(world.listedNames(), QStringList{u"two.txt"_s});
        QVERIFY(QFile::exists(one.path) && QFile::exists(three.path));
    }

    void aNewTimeIsAtLeastAMinuteAndWarnsAgain()
    {
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.store().markWarningSent(item.id);

        world.store().updateExpirations({item.id}, -5);

        QCOMPARE(world.item(item.path).expiresAt, world.time.now() + 1min);
        QVERIFY(!world.item(item.path).fiveMinuteWarningSent);
    }

    void whatALaneHasInHandStays_data()
    {
        QTest::addColumn<Act>("act");
        QTest::newRow("locked") << Act(lock);
        QTest::newRow("given time") << Act(giveAnHour);
        QTest::newRow("taken off the list") << Act(takeOff);
    }

    void whatALaneHasInHandStays()
    {
        QFETCH(const Act, act);
        StoreWorld world;
        const LapsaItem one = world.add(world.home.makeFile(u"one.txt"_s), 1);
        const LapsaItem two = world.add(world.home.makeFile(u"two.txt"_s), 1);
        const LapsaItem other = world.add(world.home.makeFile(u"other.txt"_s), 1);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.time.advance(61s);
        world.store().deleteExpiredItems();

        act(world.store(), {one.id, two.id});
        world.lanes.runAll();
        world.time.settle();
        world.lanes.runAll();

        QVERIFY(QFile::exists(one.path) && QFile::exists(two.path));
        QVERIFY(!QFile::exists(other.path));
    }

    void aFolderAboveOneOfManyLocksStays()
    {
        StoreWorld world;
        const LapsaItem keep = world.add(world.home.makeFile(u"proj/sub/keep.txt"_s), 90);
        const LapsaItem beside = world.add(world.home.makeFile(u"beside/keep.txt"_s), 90);
        const LapsaItem folder = world.add(world.home.path(u"proj"_s), 1);
        const LapsaItem longer = world.add(world.home.makeFolder(u"proj-2"_s), 1);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.time.advance(61s);
        world.store().deleteExpiredItems();

        world.store().lockItems({keep.id, beside.id});
        world.lanes.runAll();
        world.time.settle();
        world.lanes.runAll();

        QVERIFY(QFile::exists(keep.path));
        QVERIFY(!QFile::exists(longer.path));
        QCOMPARE(world.item(folder.path).id, folder.id);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_selection_test)
#include "LapsaStore_selection_test.moc"
