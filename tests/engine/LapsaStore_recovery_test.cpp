// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "ReadOnlyWorld.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString recoveryName = u"recovery.json"_s;

} // namespace

class LapsaStore_recovery_test final : public QObject
{
    Q_OBJECT

private slots:

    void deletingByHandRemovesTheCopyAndTheRecord()
    {
        StoreWorld world;
        const LapsaRecoveryItem kept = park(world, u"kept.txt"_s);
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);

        world.store().deleteRecoveryItem(parked);

        QVERIFY(!QFile::exists(parked.recoveryPath));
        QCOMPARE(world.store().recoveryItems(), QList{kept});
    }

    void deletingByHandDropsTheRecordWhateverBecomesOfTheCopy_data()
    {
        QTest::addColumn<QString>("recoveryPath");

        QTest::newRow("the copy is gone") << u"%home%/missing"_s;
        QTest::newRow("the copy is the home folder") << u"%home%"_s;
        QTest::newRow("the copy is the data folder") << u"%home%/.local/share/Lapsa"_s;
        QTest::newRow("the copy is the root") << u"/"_s;
        QTest::newRow("the path is relative") << u"."_s;
        QTest::newRow("the path is empty") << QString();
    }

    void deletingByHandDropsTheRecordWhateverBecomesOfTheCopy()
    {
        if (!inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(QString, recoveryPath);
        StoreWorld world(false);
        world.home.makeFile(u"kept.txt"_s);
        const LapsaRecoveryItem parked =
            recordAt(recoveryPath.replace(u"%home%"_s, world.home.path({})), distantFuture, world.home.path(u"a"_s));
        startWith(world, {parked});
        const LogCapture log;

        world.store().deleteRecoveryItem(parked);

        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(world.home.names({}), QStringList({u".local"_s, u"kept.txt"_s}));
        QVERIFY(QFile::exists(world.home.dataPath(u"state.json"_s)));
    }

    void threeDeletionsInABurstAreOneWrite()
    {
        StoreWorld world;
        const QList parked{park(world, u"a"_s), park(world, u"b"_s), park(world, u"c"_s)};
        QFile::remove(world.home.dataPath(recoveryName));

        for (const LapsaRecoveryItem& item : parked) {
            world.time.advance(100ms);
            world.store().deleteRecoveryItem(item);
        }

        world.time.advance(349ms);
        QVERIFY(world.home.dataFile(recoveryName).isNull());
        world.time.advance(1ms);
        QCOMPARE(world.home.dataFile(recoveryName), QByteArray("[]\n"));
        QFile::remove(world.home.dataPath(recoveryName));
        world.time.advance(1h);
        QVERIFY(world.home.dataFile(recoveryName).isNull());
    }

    void recordsWithTheSameIdAreDroppedTogether()
    {
        for (const bool restore : {true, false}) {
            StoreWorld world(false);
            const QString copy = world.home.makeFile(recoveryFolder + u"/copy"_s);
            LapsaRecoveryItem first = recordAt(copy, distantFuture, world.home.path(u"a"_s));
            LapsaRecoveryItem second = first;
            second.recoveryPath = world.home.makeFile(recoveryFolder + u"/other copy"_s);
            const LapsaRecoveryItem other = recordAt(copy, distantFuture, world.home.path(u"b"_s));
            startWith(world, {first, other, second});

            // The very record of the list, which goes away while it is dropped.
            if (restore) {
                world.store().restoreRecoveryItem(world.store().recoveryItems().last());
            } else {
                world.store().deleteRecoveryItem(world.store().recoveryItems().last());
            }

            QCOMPARE(world.store().recoveryItems(), QList{other});
            QVERIFY(QFile::exists(copy));
        }
    }

    void aCopyWhoseTimeIsNowIsPurged()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);
        world.time.setClock(parked.purgeAfter - 1us);
        world.store().purgeExpiredRecovery();
        QVERIFY(QFile::exists(parked.recoveryPath));

        world.time.setClock(parked.purgeAfter);
        world.store().purgeExpiredRecovery();

        QVERIFY(!QFile::exists(parked.recoveryPath));
        QVERIFY(world.store().recoveryItems().isEmpty());
        world.letSavesPass();
        QCOMPARE(world.home.dataFile(recoveryName), QByteArray("[]\n"));
    }

    void aPurgeWithNothingDueWritesNothing()
    {
        StoreWorld world;
        park(world, u"a.txt"_s);
        QFile::remove(world.home.dataPath(recoveryName));

        world.store().purgeExpiredRecovery();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(recoveryName).isNull());
        QCOMPARE(world.store().recoveryItems().size(), 1);
    }

    void aPurgeDropsTheRecordOfACopyThatCannotBeRemovedAndGoesOn()
    {
        if (!inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/copy"_s);
        startWith(world, {recordAt(world.home.path(u"missing"_s), world.time.now() + 1h),
                          recordAt(world.home.path({}), world.time.now() + 1h), recordAt(copy, world.time.now() + 1h)});
        const LogCapture log;
        world.time.advance(1h);

        world.store().purgeExpiredRecovery();

        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(!QFile::exists(copy));
        QVERIFY(QFile::exists(world.home.path({})));
        QCOMPARE(log.lines(), QStringList());
    }

    void aCopyThatLiesWhereAnEarlierOneLayKeepsItsOwnTime()
    {
        StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/copy"_s);
        startWith(world, {recordAt(copy, world.time.now() + 1h), recordAt(copy, world.time.now() + 2h)});

        world.time.advance(1h);
        world.store().purgeExpiredRecovery();

        QCOMPARE(world.store().recoveryItems().size(), 1);
        QVERIFY(QFile::exists(copy));

        world.time.advance(1h);
        world.store().purgeExpiredRecovery();

        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(!QFile::exists(copy));
    }

    void aParkedFolderIsPurgedWhole()
    {
        StoreWorld world;
        world.home.makeFile(u"photos/2026/a.jpg"_s);
        world.store().deleteNow(world.add(world.home.path(u"photos"_s)));
        world.time.advance(24h);

        world.store().purgeExpiredRecovery();

        QCOMPARE(world.home.names(recoveryFolder), QStringList());
    }

    void aLaterChangeOfTheRetentionLeavesTheRecordsAlone()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);

        world.changeSettings([](LapsaSettings& settings) { settings.recoveryRetentionHours = 1; });
        world.time.advance(2h);
        world.store().purgeExpiredRecovery();

        QCOMPARE(world.store().recoveryItems(), QList{parked});
    }

    void savingTheRecoveryListNowLeavesNoWriteWaiting()
    {
        StoreWorld world;
        world.store().saveRecoverySoon();
        QFile::remove(world.home.dataPath(recoveryName));

        world.store().saveRecoveryNow();

        QCOMPARE(world.home.dataFile(recoveryName), QByteArray("[]\n"));
        QFile::remove(world.home.dataPath(recoveryName));
        world.time.advance(1h);
        QVERIFY(world.home.dataFile(recoveryName).isNull());
    }

    void aSaveOfTheItemsDoesNotCancelThatOfTheRecoveryListUnlessItRuns()
    {
        StoreWorld world;
        world.store().saveRecoverySoon();
        world.time.advance(100ms);
        QFile::remove(world.home.dataPath(recoveryName));
        world.store().saveSoon();

        world.time.advance(250ms);

        QVERIFY(!world.home.dataFile(recoveryName).isNull());
    }
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_recovery_test)

#include "LapsaStore_recovery_test.moc"
