// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CleanupService.h"
#include "StoreWorld.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <optional>
#include <tuple>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

using Warnings = QList<std::pair<QString, std::int64_t>>;

/// The store with the service that drives it.
struct World final : test::StoreWorld
{
    test::RecordingWarnings warnings;
    std::optional<CleanupService> service;

    World() { service.emplace(store(), warnings, CleanupService::Environment{.clock = time, .mainQueue = time}); }
};

} // namespace

class CleanupService_test final : public QObject
{
    Q_OBJECT

private slots:

    void theFirstPassRunsAtStartAndTheNextOnesEveryMinute()
    {
        World world;
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.time.advance(1min);

        world.service->start();
        QVERIFY(world.store().items().isEmpty());

        const LapsaItem next = world.add(world.home.makeFile(u"b.txt"_s), 1);
        world.time.advance(59999ms);
        QVERIFY(next.exists());
        world.time.advance(1ms);
        QVERIFY(!next.exists());
    }

    void startingAgainKeepsOneTimer()
    {
        World world;
        world.service->start();
        world.service->start();
        world.letSavesPass();

        QCOMPARE(world.time.waitingTasks(), std::size_t{1});
    }

    void aStoppedServiceRunsNoPass()
    {
        World world;
        world.service->stop(); // with no timer running
        world.service->start();
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);

        world.service->stop();
        world.time.advance(1h);

        QVERIFY(item.exists());
        QCOMPARE(world.time.waitingTasks(), std::size_t{0});
    }

    void aPassWithoutAStoreDoesNothing()
    {
        World world;
        const LapsaItem due = world.add(world.home.makeFile(u"due.txt"_s), 20);
        world.add(world.home.makeFile(u"warned.txt"_s), 30);
        world.service->start();

        world.stop();
        world.time.advance(1h);

        // The timer goes on, and what its passes would have done did not happen.
        QCOMPARE(world.time.waitingTasks(), std::size_t{1});
        QCOMPARE(world.warnings.sent, Warnings());
        QVERIFY(due.exists());
    }

    void aPassOfAServiceThatIsGoneDoesNothing()
    {
        World world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.service->start();

        world.service.reset();
        world.time.advance(1h);

        QVERIFY(item.exists());
    }

    void anItemCloseToItsEndIsWarnedAboutOnceWithTheConfiguredMinutes()
    {
        World world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);
        world.time.advance(30s); // 4 minutes 30 seconds left

        world.service->tick();
        QCOMPARE(world.warnings.sent, (Warnings{{item.id, 5}}));
        QVERIFY(world.item(item.path).fiveMinuteWarningSent);
        world.time.advance(1min);
        world.service->tick();

        QCOMPARE(world.warnings.sent.size(), 1);
        QVERIFY(world.home.dataFile(u"state.json"_s).contains("\"fiveMinuteWarningSent\" : true"));
    }

    void theLeadTimeIsInclusiveAndItsEndIsNot_data()
    {
        QTest::addColumn<qint64>("microsecondsLeft");
        QTest::addColumn<bool>("warned");
        QTest::addColumn<bool>("deleted");

        constexpr qint64 lead = 300'000'000;
        QTest::newRow("a little more than the lead time") << lead + 1 << false << false;
        QTest::newRow("exactly the lead time") << lead << true << false;
        QTest::newRow("one microsecond") << qint64{1} << true << false;
        QTest::newRow("nothing") << qint64{0} << false << true;
        QTest::newRow("less than nothing") << qint64{-1} << false << true;
    }

    void theLeadTimeIsInclusiveAndItsEndIsNot()
    {
        QFETCH(qint64, microsecondsLeft);
        QFETCH(bool, warned);
        QFETCH(bool, deleted);
        World world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 60);
        world.time.setClock(item.expiresAt - std::chrono::microseconds{microsecondsLeft});

        world.service->tick();

        QCOMPARE(world.warnings.sent.size(), warned ? 1 : 0);
        QCOMPARE(item.exists(), !deleted);
    }

    void aLockedItemIsNeitherWarnedAboutNorDeleted()
    {
        World world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);
        world.store().toggleLock(item);

        world.service->tick();
        world.time.advance(10min);
        world.service->tick();

        QCOMPARE(world.warnings.sent, Warnings());
        QVERIFY(item.exists());
        QCOMPARE(world.store().items().size(), 1);
    }

    void withWarningsOffNoneIsSent()
    {
        World world;
        world.changeSettings([](LapsaSettings& settings) { settings.enableExpiryNotifications = false; });
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);

        world.service->tick();

        QCOMPARE(world.warnings.sent, Warnings());
        QVERIFY(!world.item(item.path).fiveMinuteWarningSent);
    }

    void aCountdownThatIsExtendedIsWarnedAboutAgain()
    {
        World world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);
        world.service->tick();

        world.store().updateExpiration(item, 3);
        world.service->tick();

        QCOMPARE(world.warnings.sent, (Warnings{{item.id, 5}, {item.id, 5}}));
    }

    void severalItemsAreWarnedAboutInListOrder()
    {
        World world;
        const LapsaItem first = world.add(world.home.makeFile(u"b.txt"_s), 4);
        world.add(world.home.makeFile(u"later.txt"_s), 60);
        const LapsaItem second = world.add(world.home.makeFile(u"a.txt"_s), 3);

        world.service->tick();

        QCOMPARE(world.warnings.sent, (Warnings{{first.id, 5}, {second.id, 5}}));
    }

    void ofManyItemsTenAreWarnedAboutOneByOneAndTheOthersTogether_data()
    {
        QTest::addColumn<int>("due");
        QTest::addColumn<int>("single");
        QTest::addColumn<int>("together");

        QTest::newRow("as many as come one by one") << 10 << 10 << 0;
        QTest::newRow("one more") << 11 << 10 << 1;
        QTest::newRow("many") << 300 << 10 << 290;
    }

    void ofManyItemsTenAreWarnedAboutOneByOneAndTheOthersTogether()
    {
        QFETCH(const int, due);
        QFETCH(const int, single);
        QFETCH(const int, together);
        World world;
        for (int number = 0; number < due; ++number) {
            world.add(world.home.makeFile(QString::number(number)), 4);
        }
        const QList<LapsaItem> items = world.store().items();

        world.service->tick();

        Warnings oneByOne;
        for (const LapsaItem& item : items.first(single)) {
            oneByOne.push_back({item.id, 5});
        }
        QCOMPARE(world.warnings.sent, oneByOne);
        QCOMPARE(world.warnings.joint.size(), together == 0 ? 0 : 1);
        if (together > 0) {
            QCOMPARE(world.warnings.joint[0].first, items.last(together));
            QCOMPARE(world.warnings.joint[0].second, 5);
        }
        QVERIFY(std::ranges::all_of(world.store().items(), &LapsaItem::fiveMinuteWarningSent));
        world.service->tick();
        QCOMPARE(world.warnings.sent.size(), single);
        QCOMPARE(world.warnings.joint.size(), together == 0 ? 0 : 1);
    }

    void whilePausedAPassWarnsOfNothingAndDeletesAndPurgesNothing()
    {
        World world;
        std::ignore = world.store().deleteNow(world.add(world.home.makeFile(u"parked.txt"_s)));
        const QString copy = world.store().recoveryItems().first().recoveryPath;
        world.time.advance(24h);
        const LapsaItem due = world.add(world.home.makeFile(u"due.txt"_s), 20);
        world.time.advance(1min);
        world.add(world.home.makeFile(u"soon.txt"_s), 3);
        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });

        world.service->tick();

        QCOMPARE(world.warnings.sent, Warnings());
        QVERIFY(due.exists());
        QVERIFY(QFile::exists(copy));
        QCOMPARE(world.store().items().size(), 2);
    }

    void aPassScansTheWatchedFoldersFirst()
    {
        World world;
        world.changeSettings([&](LapsaSettings& settings) {
            settings.autoCleanFolders = {{.folderPath = world.home.makeFolder(u"watched"_s),
                                          .lifespanMinutes = 3,
                                          .includeExistingFiles = true,
                                          .applyFileTypeRules = false}};
        });
        const QString path = world.home.makeFile(u"watched/a.txt"_s);

        world.service->tick();

        QCOMPARE(world.warnings.sent, (Warnings{{world.item(path).id, 5}}));
    }

    void aPassWithNothingDueSavesNothing()
    {
        World world;
        world.add(world.home.makeFile(u"a.txt"_s), 60);
        world.letSavesPass();
        QFile::remove(world.home.dataPath(u"state.json"_s));

        world.service->tick();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
    }

    void theRoadOfOneFileFromAddingToPurge()
    {
        World world;
        const QString path = world.home.makeFile(u"report.zip"_s, "bytes");
        world.service->start();
        world.store().addFiles({QUrl::fromLocalFile(path)});
        const LapsaItem item = world.item(path);
        QCOMPARE(item.expiresAt - item.addedAt, 10080min);

        world.time.advance(10074min);
        QCOMPARE(world.warnings.sent, Warnings());
        world.time.advance(1min);
        QCOMPARE(world.warnings.sent, (Warnings{{item.id, 5}}));
        QVERIFY(item.exists());

        world.time.advance(5min);
        QVERIFY(!item.exists());
        QVERIFY(world.store().items().isEmpty());
        const LapsaRecoveryItem record = world.store().recoveryItems().first();
        QVERIFY(QFile::exists(record.recoveryPath));

        world.time.advance(24h - 1min);
        QVERIFY(QFile::exists(record.recoveryPath));
        world.time.advance(2min);
        QVERIFY(!QFile::exists(record.recoveryPath));
        QCOMPARE(world.home.dataFile(u"recovery.json"_s), QByteArray("[]\n"));
    }
};

QTEST_GUILESS_MAIN(CleanupService_test)

#include "CleanupService_test.moc"
