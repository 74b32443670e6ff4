// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CaselessDisk.h"
#include "CleanupService.h"
#include "LogCapture.h"
#include "Privileges.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <unistd.h>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class LapsaStore_locks_test final : public QObject
{
    Q_OBJECT

private slots:

    void aFolderThatHoldsALockedItemIsPassedOver_data()
    {
        QTest::addColumn<QString>("due");
        QTest::addColumn<QString>("locked");
        QTest::addColumn<bool>("goes");

        QTest::newRow("directly in it") << u"proj"_s << u"proj/keep.txt"_s << false;
        QTest::newRow("deep in it") << u"proj"_s << u"proj/sub/deep/keep.txt"_s << false;
        QTest::newRow("a folder in it") << u"proj"_s << u"proj/sub/deep"_s << false;
        QTest::newRow("the item by a detour") << u"proj"_s << u"proj/./sub/..//keep.txt"_s << false;
        QTest::newRow("the folder by a detour") << u"proj/sub/../..//proj/"_s << u"proj/keep.txt"_s << false;
        QTest::newRow("the folder with slashes in front") << u"//proj"_s << u"proj/keep.txt"_s << false;
        QTest::newRow("the item by a link to the folder") << u"proj"_s << u"link to proj/keep.txt"_s << false;
        QTest::newRow("the item by a link to a folder in it") << u"proj"_s << u"link to sub/deep/keep.txt"_s << false;
        QTest::newRow("the folder by a link on the way") << u"link to home/proj"_s << u"proj/keep.txt"_s << false;
        QTest::newRow("the item by a link in the folder") << u"proj"_s << u"proj/link out/else.txt"_s << false;
        QTest::newRow("the same file by a link on the way")
            << u"proj/keep.txt"_s << u"link to proj/keep.txt"_s << false;
        QTest::newRow("the same folder by a link on the way") << u"proj"_s << u"link to home/proj"_s << false;
        QTest::newRow("the same file twice") << u"proj/keep.txt"_s << u"proj/keep.txt"_s << false;
        QTest::newRow("beside it") << u"proj"_s << u"proj-2/keep.txt"_s << true;
        QTest::newRow("above it") << u"proj/sub"_s << u"proj"_s << true;
        QTest::newRow("in it, but gone") << u"proj"_s << u"proj/gone.txt"_s << true;
        QTest::newRow("another name of the same file") << u"proj/keep.txt"_s << u"other name.txt"_s << true;
        QTest::newRow("a link to the folder") << u"link to proj"_s << u"proj/keep.txt"_s << true;
    }

    void aFolderThatHoldsALockedItemIsPassedOver()
    {
        QFETCH(QString, due);
        QFETCH(QString, locked);
        QFETCH(bool, goes);
        StoreWorld world(false);
        const QString home = world.home.path({});
        const QByteArray kept = world.home.makeFile(u"proj/keep.txt"_s).toUtf8();
        world.home.makeFile(u"proj/sub/deep/keep.txt"_s);
        world.home.makeFile(u"proj-2/keep.txt"_s);
        world.home.makeFile(u"elsewhere/else.txt"_s);
        QVERIFY(QFile::link(home + u"/elsewhere"_s, home + u"/proj/link out"_s));
        QVERIFY(QFile::link(home + u"/proj"_s, home + u"/link to proj"_s));
        QVERIFY(QFile::link(home + u"/proj/sub"_s, home + u"/link to sub"_s));
        QVERIFY(QFile::link(home, home + u"/link to home"_s));
        QCOMPARE(::link(kept.constData(), (home + u"/other name.txt"_s).toUtf8().constData()), 0);
        const QString path = due.startsWith(u"//") ? u'/' + home + due : home + u'/' + due;
        const LapsaItem lockedItem = itemAt(home + u'/' + locked, distantPast, true);
        const LapsaItem dueItem = itemAt(path, distantPast, false);
        startWith(world, {}, {lockedItem, dueItem});
        const QStringList before = world.home.names({});
        const LogCapture log;

        world.store().deleteExpiredItems();

        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(world.store().items(), goes ? QList{lockedItem} : QList({lockedItem, dueItem}));
        QCOMPARE(world.store().recoveryItems().size(), goes ? 1 : 0);
        QCOMPARE(world.home.names({}) == before && world.home.names(u"proj"_s).contains(u"keep.txt"_s) &&
                     world.home.names(u"proj"_s).contains(u"sub"_s),
                 !goes);
    }

    void aLockHoldsWhateverTheFilesBecome_data()
    {
        QTest::addColumn<bool>("useRecoveryWindow");
        QTest::addColumn<bool>("useTrash");

        QTest::newRow("into Recovery") << true << true;
        QTest::newRow("into the Trash") << false << true;
        QTest::newRow("for good") << false << false;
    }

    void aLockHoldsWhateverTheFilesBecome()
    {
        QFETCH(bool, useRecoveryWindow);
        QFETCH(bool, useTrash);
        StoreWorld world;
        setDisposal(world, useRecoveryWindow, useTrash);
        const LapsaItem kept = world.add(world.home.makeFile(u"proj/keep.txt"_s), 1);
        const LapsaItem folder = world.add(world.home.path(u"proj"_s), 1);
        world.store().toggleLock(kept);
        world.time.advance(1h);

        world.store().deleteExpiredItems();
        QVERIFY(kept.exists());
        QCOMPARE(world.store().items().size(), 2);

        world.store().toggleLock(kept);
        world.store().deleteExpiredItems();
        QVERIFY(!folder.exists());
        QVERIFY(world.store().items().isEmpty());
    }

    void aPassThatIsHeldUpByLocksAloneSavesNothing()
    {
        StoreWorld world;
        world.store().toggleLock(world.add(world.home.makeFile(u"proj/keep.txt"_s), 1));
        world.add(world.home.path(u"proj"_s), 1);
        world.time.advance(1h);
        QFile::remove(world.home.dataPath(u"state.json"_s));

        world.store().deleteExpiredItems();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
    }

    void anotherSpellingDoesNotGetRoundALock_data()
    {
        QTest::addColumn<QString>("due");
        QTest::addColumn<QString>("locked");

        QTest::newRow("the folder has another spelling") << u"PROJ"_s << u"proj/keep.txt"_s;
        QTest::newRow("the item has another spelling") << u"proj"_s << u"Proj/Keep.TXT"_s;
        QTest::newRow("the same file has another spelling") << u"proj/KEEP.txt"_s << u"proj/keep.txt"_s;
    }

    void anotherSpellingDoesNotGetRoundALock()
    {
        QFETCH(QString, due);
        QFETCH(QString, locked);
        if (!PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        StoreWorld world(false);
        const QString volume = world.home.path(u"volume"_s);
        const auto disk = CaselessDisk::mountedAt(volume);
        if (!disk) {
            QSKIP("The system has no exFAT");
        }
        const QString kept = world.home.makeFile(u"volume/proj/keep.txt"_s);
        startWith(world, {},
                  {itemAt(volume + u'/' + locked, distantPast, true), itemAt(volume + u'/' + due, distantPast, false)});

        world.store().deleteExpiredItems();

        QVERIFY(QFile::exists(kept));
        QCOMPARE(world.store().items().size(), 2);
    }

    void whatIsOnCountdownInAFolderLeavesTheListWithIt()
    {
        StoreWorld world;
        const LapsaItem inside = world.add(world.home.makeFile(u"proj/sub/a.txt"_s), 600);
        const LapsaItem beside = world.add(world.home.makeFile(u"proj-2/a.txt"_s), 600);
        const LapsaItem gone = world.add(world.home.makeFile(u"proj/gone.txt"_s), 600);
        world.store().toggleLock(gone);
        QVERIFY(QFile::remove(gone.path));
        world.add(world.home.path(u"proj"_s), 1);
        world.time.advance(1min);

        world.store().deleteExpiredItems();

        QCOMPARE(world.store().items(), QList({beside, world.item(gone.path)}));
        QVERIFY(!inside.exists());
    }

    void whatIsOnCountdownInAFolderThatCannotGoStaysOnTheList()
    {
        StoreWorld world;
        const LapsaItem inside = world.add(world.home.makeFile(u"proj/a.txt"_s), 600);
        world.add(world.home.path(u"proj"_s), 1);
        QDir().rmdir(world.home.dataPath(u"Recovery"_s));
        world.home.writeDataFile(u"Recovery"_s, "in the way");
        world.time.advance(1min);
        const LogCapture log;

        world.store().deleteExpiredItems();

        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(world.store().items(), QList{inside});
        QVERIFY(inside.exists());
    }

    void aFolderThatIsPassedOverIsNotWarnedAbout()
    {
        StoreWorld world;
        RecordingWarnings warnings;
        CleanupService service(world.store(), warnings, {.clock = world.time, .mainQueue = world.time});
        const LapsaItem kept = world.add(world.home.makeFile(u"proj/keep.txt"_s), 600);
        const LapsaItem folder = world.add(world.home.path(u"proj"_s), 4);
        world.store().toggleLock(kept);

        service.tick();
        QVERIFY(warnings.sent.isEmpty());
        world.store().toggleLock(kept);
        service.tick();

        QCOMPARE(warnings.sent.size(), 1);
    }

    void deletingAFolderThatHoldsALockedItemTakesNothing()
    {
        StoreWorld world;
        const LapsaItem kept = world.add(world.home.makeFile(u"proj/keep.txt"_s));
        const LapsaItem folder = world.add(world.home.path(u"proj"_s));
        world.store().toggleLock(kept);

        const LapsaStore::DeleteOutcome outcome = world.deleted(folder);

        QCOMPARE(outcome, LapsaStore::DeleteOutcome::HoldsLockedItem);
        QVERIFY(kept.exists());
        QCOMPARE(world.store().items(), QList({world.item(kept.path), folder}));
    }

    void deletingAFolderByHandTakesWhatIsOnCountdownInItOffTheList()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"proj/a.txt"_s));
        const LapsaItem folder = world.add(world.home.path(u"proj"_s));
        world.store().toggleLock(folder); // its own lock is no hindrance

        const LapsaStore::DeleteOutcome outcome = world.deleted(world.item(folder.path));

        QCOMPARE(outcome, LapsaStore::DeleteOutcome::OffTheList);
        QVERIFY(!folder.exists());
        QVERIFY(world.store().items().isEmpty());
    }

    void aHundredThousandLockedItemsAreLookedAtOnce()
    {
        StoreWorld world(false);
        constexpr int count = 100'000;
        constexpr int folders = 100;
        QList<LapsaItem> items;
        items.reserve(count + folders);
        for (int number = 0; number < count; ++number) {
            items.push_back(
                itemAt(u"%1/locked/%2/%3"_s.arg(world.home.path({})).arg(number % 300).arg(number), distantPast, true));
        }
        world.home.makeFile(u"locked/0/0"_s);
        for (int number = 0; number < folders; ++number) {
            items.push_back(itemAt(world.home.makeFolder(u"due/%1"_s.arg(number)), distantPast, false));
        }
        items.push_back(itemAt(world.home.path(u"locked"_s), distantPast, false));
        startWith(world, {}, items);

        world.store().deleteExpiredItems();

        QCOMPARE(world.store().items().size(), count + 1);
        QVERIFY(QFile::exists(world.home.path(u"locked/0/0"_s)));
        QCOMPARE(world.home.names(u"due"_s), QStringList());
    }
};

QTEST_GUILESS_MAIN(LapsaStore_locks_test)

#include "LapsaStore_locks_test.moc"
