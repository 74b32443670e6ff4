// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "ReadOnlyWorld.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class LapsaStore_expiry_test final : public QObject
{
    Q_OBJECT

private slots:

    void bothListsAreSavedAfterASweep()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        expire(world);

        world.time.advance(299ms);
        QVERIFY(!world.home.dataFile(u"recovery.json"_s).contains("a.txt"));
        world.time.advance(51ms);

        QCOMPARE(world.home.dataFile(u"state.json"_s), QByteArray("[]\n"));
        QVERIFY(world.home.dataFile(u"recovery.json"_s).contains("a.txt"));
    }

    void aLockedItemStaysHoweverLongItsTimeIsOver()
    {
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.store().toggleLock(item);

        expire(world);

        QVERIFY(item.exists());
        QCOMPARE(world.store().items().size(), 1);
    }

    void whatIsNotDueStaysInItsOrder()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"c"_s), 60 * 48);
        world.add(world.home.makeFile(u"due"_s), 1);
        world.add(world.home.makeFile(u"b"_s), 60 * 48);

        expire(world);

        QCOMPARE(world.listedNames(), QStringList({u"c"_s, u"b"_s}));
        QVERIFY(QFile::exists(world.home.path(u"b"_s)));
    }

    void aFileThatIsGoneIsDroppedWithoutAWord()
    {
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        QVERIFY(QFile::remove(item.path));
        const LogCapture log;

        expire(world);

        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(log.lines(), QStringList());
    }

    void aSweepWithNothingDueSavesNothing()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 10);
        world.letSavesPass();
        QFile::remove(world.home.dataPath(u"state.json"_s));
        QFile::remove(world.home.dataPath(u"recovery.json"_s));

        world.store().deleteExpiredItems();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
        QVERIFY(world.home.dataFile(u"recovery.json"_s).isNull());
    }

    void aSweepWhilePausedPurgesAndThenStops()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"parked.txt"_s), 1);
        expire(world);
        const LapsaItem due = world.add(world.home.makeFile(u"due.txt"_s), 1);
        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder), QStringList());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(due.exists());
        QCOMPARE(world.store().items(), QList{due});
    }

    void anItemThatExpiresWhileOthersAreOnTheirWayIsLeftToTheNextPass()
    {
        StoreWorld world;
        const LapsaItem first = world.add(world.home.makeFile(u"first.txt"_s), 1);
        const LapsaItem late = world.add(world.home.makeFile(u"late.txt"_s), 2);
        world.time.advance(1min);
        // Disposing of the first takes so long that the second is due before the list is cleared.
        connect(&world.store(), &LapsaStore::willChange, this, [&] {
            if (!world.store().recoveryItems().isEmpty()) {
                world.time.setClock(late.expiresAt);
            }
        });

        world.store().deleteExpiredItems();

        QVERIFY(!first.exists());
        QVERIFY(late.exists());
        QCOMPARE(world.store().recoveryItems().size(), 1);
        QCOMPARE(world.store().items(), QList{late});

        world.store().deleteExpiredItems();

        QVERIFY(!late.exists());
        QVERIFY(world.store().items().isEmpty());
    }
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_expiry_test)

#include "LapsaStore_expiry_test.moc"
