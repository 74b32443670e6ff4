// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CaselessDisk.h"
#include "FileTree.h"
#include "Privileges.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <unistd.h>

#include <chrono>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class RecoveryPurge_kept_copies_test final : public QObject
{
    Q_OBJECT

private slots:

    void aCopyThatIsOnTheListStaysWithItsRecord_data()
    {
        QTest::addColumn<QString>("itemPath");
        QTest::addColumn<int>("minutesLeft");
        QTest::addColumn<bool>("locked");
        QTest::addColumn<bool>("stays");

        const QString own = u"%home%/"_s + recoveryFolder;
        QTest::newRow("locked") << own + u"/folder"_s << -1 << true << true;
        QTest::newRow("with time left") << own + u"/folder"_s << 1 << false << true;
        QTest::newRow("run out") << own + u"/folder"_s << -1 << false << false;
        QTest::newRow("locked, something inside it") << own + u"/folder/sub/a.txt"_s << -1 << true << true;
        QTest::newRow("with time left, something inside it") << own + u"/folder/sub/a.txt"_s << 1 << false << true;
        QTest::newRow("run out, something inside it") << own + u"/folder/sub/a.txt"_s << -1 << false << false;
        QTest::newRow("locked, something inside it that is gone") << own + u"/folder/gone.txt"_s << -1 << true << false;
        QTest::newRow("locked, by a detour") << own + u"/../Recovery//./folder/"_s << -1 << true << true;
        QTest::newRow("locked, by a link") << u"%home%/by link/Recovery/folder"_s << -1 << true << true;
        QTest::newRow("locked, inside it by a link")
            << u"%home%/by link/Recovery/folder/sub/a.txt"_s << -1 << true << true;
        QTest::newRow("locked, by a link into it") << u"%home%/into it/a.txt"_s << -1 << true << true;
        QTest::newRow("locked, beside it") << own + u"/folder-1"_s << -1 << true << false;
    }

    void aCopyThatIsOnTheListStaysWithItsRecord()
    {
        QFETCH(QString, itemPath);
        QFETCH(int, minutesLeft);
        QFETCH(bool, locked);
        QFETCH(bool, stays);
        StoreWorld world(false);
        const QString copy = world.home.path(recoveryFolder + u"/folder"_s);
        world.home.makeFile(recoveryFolder + u"/folder/sub/a.txt"_s);
        world.home.makeFile(recoveryFolder + u"/folder-1/a.txt"_s);
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"by link"_s)));
        QVERIFY(QFile::link(copy + u"/sub"_s, world.home.path(u"into it"_s)));
        const LapsaRecoveryItem due = recordAt(copy, world.time.now());

        startWith(world, {due},
                  {itemAt(itemPath.replace(u"%home%"_s, world.home.path({})),
                          world.time.now() + std::chrono::minutes(minutesLeft), locked)});

        QCOMPARE(QFile::exists(copy + u"/sub/a.txt"_s), stays);
        QCOMPARE(world.store().recoveryItems(), stays ? QList{due} : QList<LapsaRecoveryItem>());
    }

    void aCopyGoesOnceItsItemIsUnlocked()
    {
        StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        startWith(world, {recordAt(copy, world.time.now())}, {itemAt(copy, distantPast, true)});
        world.home.writeDataFile(u"recovery.json"_s, "not to be written");
        world.store().purgeExpiredRecovery();
        world.letSavesPass();
        QCOMPARE(world.home.dataFile(u"recovery.json"_s), QByteArray("not to be written"));

        world.store().toggleLock(world.item(copy));
        world.store().purgeExpiredRecovery();

        QVERIFY(!QFile::exists(copy));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aCopyThatAnotherRecordKeepsStays_data()
    {
        QTest::addColumn<QString>("keptAs");

        QTest::newRow("by the same path") << u"%own%/a.txt"_s;
        QTest::newRow("by a detour") << u"%own%/../Recovery/./a.txt"_s;
        QTest::newRow("with more slashes") << u"//%own%//a.txt/"_s;
        QTest::newRow("by a link") << u"%home%/by link/Recovery/a.txt"_s;
    }

    void aCopyThatAnotherRecordKeepsStays()
    {
        QFETCH(QString, keptAs);
        StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"by link"_s)));
        keptAs.replace(u"%own%"_s, world.home.path(recoveryFolder)).replace(u"%home%"_s, world.home.path({}));
        const LapsaRecoveryItem later = recordAt(keptAs, world.time.now() + 1h);

        startWith(world, {recordAt(copy, world.time.now()), later});
        QVERIFY(QFile::exists(copy));
        QCOMPARE(world.store().recoveryItems(), QList{later});

        world.time.advance(1h);
        world.store().purgeExpiredRecovery();
        QVERIFY(!QFile::exists(copy));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aRestoreOfACopyThatAnotherRecordSharesTakesItAway()
    {
        StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s, "bytes");
        const QString place = world.home.path(u"a.txt"_s);
        const LapsaRecoveryItem first = recordAt(copy, world.time.now() + 1h, place);
        const LapsaRecoveryItem second = recordAt(copy, world.time.now() + 2h, world.home.path(u"b.txt"_s));
        startWith(world, {first, second});

        world.store().restoreRecoveryItem(first);
        world.store().restoreRecoveryItem(second); // gone: its record waits for its time
        QCOMPARE(contentOf(place), QByteArray("bytes"));
        QVERIFY(!QFile::exists(second.originalPath));
        QCOMPARE(world.store().recoveryItems(), QList{second});

        world.time.advance(2h);
        world.store().purgeExpiredRecovery();
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(contentOf(place), QByteArray("bytes"));
    }

    void twoNamesOfOneFileHaveTheirOwnTimes()
    {
        StoreWorld world(false);
        const QString first = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        const QString second = world.home.path(recoveryFolder + u"/b.txt"_s);
        QCOMPARE(::link(first.toUtf8().constData(), second.toUtf8().constData()), 0);

        startWith(world, {recordAt(first, world.time.now()), recordAt(second, world.time.now() + 1h)});

        QVERIFY(!QFile::exists(first));
        QVERIFY(QFile::exists(second));
    }

    void twoFilesThatDifferInCaseAloneHaveTheirOwnTimes()
    {
        StoreWorld world(false);
        const QString first = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        const QString second = world.home.makeFile(recoveryFolder + u"/A.TXT"_s);

        startWith(world, {recordAt(first, world.time.now()), recordAt(second, world.time.now() + 1h)},
                  {itemAt(world.home.path(recoveryFolder + u"/A.txt"_s), distantFuture, true)});

        QVERIFY(!QFile::exists(first));
        QVERIFY(QFile::exists(second));
    }

    void anotherSpellingKeepsACopyToo_data()
    {
        QTest::addColumn<QString>("dueAs");
        QTest::addColumn<QString>("keptAs");
        QTest::addColumn<bool>("byItem");

        QTest::newRow("the record has another spelling") << u"Notes"_s << u"NOTES"_s << false;
        QTest::newRow("the due record has another spelling") << u"notes"_s << u"Notes"_s << false;
        QTest::newRow("the item has another spelling") << u"Notes"_s << u"noteS"_s << true;
        QTest::newRow("an item inside it has another spelling") << u"Notes"_s << u"noteS/A.TXT"_s << true;
    }

    void anotherSpellingKeepsACopyToo()
    {
        QFETCH(QString, dueAs);
        QFETCH(QString, keptAs);
        QFETCH(bool, byItem);
        if (!PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        StoreWorld world(false);
        const auto disk = CaselessDisk::mountedAt(world.home.path(u".local/share"_s));
        if (!disk) {
            QSKIP("The system has no exFAT");
        }
        const QString file = world.home.makeFile(recoveryFolder + u"/Notes/a.txt"_s);
        const QString other = world.home.path(recoveryFolder + u'/' + keptAs);
        const LapsaRecoveryItem due = recordAt(world.home.path(recoveryFolder + u'/' + dueAs), world.time.now());

        startWith(world, byItem ? QList{due} : QList{due, recordAt(other, distantFuture)},
                  byItem ? QList{itemAt(other, distantFuture, false)} : QList<LapsaItem>());

        QVERIFY(QFile::exists(file));
        QCOMPARE(world.store().recoveryItems().size(), 1);
        QCOMPARE(world.store().recoveryItems().first() == due, byItem);
    }
};

QTEST_GUILESS_MAIN(RecoveryPurge_kept_copies_test)

#include "RecoveryPurge_kept_copies_test.moc"
