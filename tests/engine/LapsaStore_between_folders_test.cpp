// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

/// What may happen while a lane lists a watched folder, or purges Recovery.
class LapsaStore_between_folders_test final : public QObject
{
    Q_OBJECT

private slots:

    void aFolderIsWatchedByItsRuleOnly_data()
    {
        QTest::addColumn<std::function<void(LapsaSettings&)>>("change");
        QTest::addColumn<bool>("taken");

        using Change = std::function<void(LapsaSettings&)>;
        QTest::newRow("nothing") << Change([](LapsaSettings&) {}) << true;
        QTest::newRow("the rule removed")
            << Change([](LapsaSettings& settings) { settings.autoCleanFolders.clear(); }) << false;
        QTest::newRow("the rule off") << Change([](LapsaSettings& settings) {
            settings.autoCleanFolders.first().enabled = false;
        }) << false;
        QTest::newRow("paused") << Change([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; }) << false;
        QTest::newRow("another lifespan")
            << Change([](LapsaSettings& settings) { settings.autoCleanFolders.first().lifespanMinutes = 7; }) << false;
    }

    void aFolderIsWatchedByItsRuleOnly()
    {
        QFETCH(const std::function<void(LapsaSettings&)>, change);
        QFETCH(const bool, taken);
        StoreWorld world;
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.includeExistingFiles = true; });
        world.home.makeFile(u"watched/a.txt"_s);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);

        world.store().scanAutoCleanFolders();
        LapsaSettings settings = world.store().settings();
        change(settings);
        world.store().setSettings(settings);
        world.lanes.runAll();

        QCOMPARE(world.listedNames(), taken ? QStringList{u"a.txt"_s} : QStringList());
    }

    void whatWasAddedDuringAScanKeepsItsTime()
    {
        StoreWorld world;
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.includeExistingFiles = true; });
        const QString path = world.home.makeFile(u"watched/a.txt"_s);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.store().scanAutoCleanFolders();
        const Lanes::Report scanned = world.lanes.workOnNext();
        world.store().addFiles({QUrl::fromLocalFile(path)}, {.fixedLifespan = 3});
        world.lanes.runAll();
        const TimePoint expiresAt = world.item(path).expiresAt;

        scanned();

        QCOMPARE(world.listedNames().size(), 1);
        QCOMPARE(world.item(path).expiresAt, expiresAt);
    }

    void aFolderThatHasNotAnsweredIsNotAskedAgain()
    {
        StoreWorld world;
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.includeExistingFiles = true; });
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.store().scanAutoCleanFolders();
        world.store().scanAutoCleanFolders();

        world.lanes.runNext();

        QVERIFY(world.lanes.isIdle());
    }

    void aPurgeLeavesWhatAnotherLaneHasJustParked()
    {
        StoreWorld world;
        const LapsaRecoveryItem old = park(world, u"a.txt"_s, "old");
        QVERIFY(QFile::remove(old.recoveryPath)); // taken back by hand
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s, "new"), 1);
        world.time.advance(24h);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.lanes.addMount(item.path);
        // The purge has been handed over, but its lane is slower than that of the file.
        world.store().purgeExpiredRecovery();
        const auto purge = world.lanes.takeNext();
        world.store().deleteNow(item);
        while (!world.lanes.isIdle()) {
            world.lanes.runNext();
        }

        purge();
        world.lanes.runAll();
        QCOMPARE(world.home.names(recoveryFolder).size(), 1);

        // The record of the old copy goes when both are known.
        world.store().purgeExpiredRecovery();
        world.lanes.runAll();
        QCOMPARE(world.store().recoveryItems().size(), 1);
        QCOMPARE(world.home.names(recoveryFolder).size(), 1);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_between_folders_test)
#include "LapsaStore_between_folders_test.moc"
