// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CleanupWorld.h"

#include <QFile>
#include <QTest>

#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class CleanupService_test final : public QObject
{
    Q_OBJECT

private slots:

    void theFirstPassRunsAtStartAndTheNextOnesEveryMinute()
    {
        CleanupWorld world;
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
        CleanupWorld world;
        world.service->start();
        world.service->start();
        world.letSavesPass();

        QCOMPARE(world.time.waitingTasks(), std::size_t{1});
    }

    void aStoppedServiceRunsNoPass()
    {
        CleanupWorld world;
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
        CleanupWorld world;
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
        CleanupWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.service->start();

        world.service.reset();
        world.time.advance(1h);

        QVERIFY(item.exists());
    }

    void whilePausedAPassWarnsOfNothingAndDeletesAndPurgesNothing()
    {
        CleanupWorld world;
        world.store().deleteNow(world.add(world.home.makeFile(u"parked.txt"_s)));
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
        CleanupWorld world;
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
        CleanupWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 60);
        world.letSavesPass();
        QFile::remove(world.home.dataPath(u"state.json"_s));

        world.service->tick();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
    }

    void theRoadOfOneFileFromAddingToPurge()
    {
        CleanupWorld world;
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
