// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONEncoder.h"
#include "LogCapture.h"
#include "Privileges.h"
#include "ReadOnlyWorld.h"
#include "StoreWorld.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

#include <cerrno>
#include <tuple>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString recoveryFolder = u".local/share/Lapsa/Recovery"_s;
const QString recoveryName = u"recovery.json"_s;
const QString noteName = u"restoring.json"_s;

/// Parks a file as a sweep does; the answer is its record.
LapsaRecoveryItem park(test::StoreWorld& world, const QString& relative, const QByteArray& content = "bytes")
{
    std::ignore = world.store().deleteNow(world.add(world.home.makeFile(relative, content)));
    world.letSavesPass();
    return world.store().recoveryItems().last();
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Starts with these records and no items.
void startWith(test::StoreWorld& world, const QList<LapsaRecoveryItem>& records)
{
    world.home.writeDataFile(u"state.json"_s, "[]");
    world.home.writeDataFile(recoveryName, JSONEncoder::lapsa().encode(records));
    world.start();
    world.letSavesPass();
}

LapsaRecoveryItem record(const QString& originalPath, const QString& recoveryPath, TimePoint purgeAfter)
{
    return {.id = QUuid::createUuid(),
            .originalPath = originalPath,
            .recoveryPath = recoveryPath,
            .displayName = u"x"_s,
            .deletedAt = distantPast,
            .purgeAfter = purgeAfter};
}

/// What a copy that was cut short leaves in a folder of the home.
void makeLeftover(const test::StoreWorld& world, const QString& folder)
{
    const QString left = world.home.makeFile(folder + u"/.lapsa-copy-0123456789abcdef"_s);
    if (::chmod(left.toUtf8().constData(), S_ISVTX | S_IRWXU) != 0) {
        qFatal("cannot mark %s", qPrintable(left));
    }
}

} // namespace

class LapsaStore_recovery_test final : public QObject
{
    Q_OBJECT

private slots:

    void restoringPutsTheFileBackAndDropsTheRecord()
    {
        test::StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(content(parked.originalPath), QByteArray("bytes"));
        QVERIFY(!QFile::exists(parked.recoveryPath));
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(world.store().items().isEmpty()); // an ordinary file again
        world.letSavesPass();
        QCOMPARE(world.home.dataFile(recoveryName), QByteArray("[]\n"));
    }

    void restoringNeverOverwrites()
    {
        test::StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s, "parked");
        world.home.makeFile(u"a.txt"_s, "new");

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(content(world.home.path(u"a.txt"_s)), QByteArray("new"));
        QCOMPARE(content(world.home.path(u"a-1.txt"_s)), QByteArray("parked"));
    }

    void restoringMakesTheFolderAgain()
    {
        test::StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"some/deep folder/a.txt"_s);
        QVERIFY(QDir(world.home.path(u"some"_s)).removeRecursively());

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(content(parked.originalPath), QByteArray("bytes"));
    }

    void restoringWithoutACopyDoesNothing()
    {
        test::StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);
        QVERIFY(QFile::remove(parked.recoveryPath));
        QFile::remove(world.home.dataPath(recoveryName));
        const test::LogCapture log;

        world.store().restoreRecoveryItem(parked);
        world.letSavesPass();

        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QCOMPARE(log.lines(), QStringList());
        QVERIFY(world.home.dataFile(recoveryName).isNull());
    }

    void aRestoreThatFailsIsLoggedAndKeepsRecordAndCopy_data()
    {
        QTest::addColumn<QString>("originalPath");
        QTest::addColumn<QString>("recoveryPath");
        QTest::addColumn<int>("code");

        QTest::newRow("the folder cannot be made")
            << u"%home%/in the way/a.txt"_s << u"%home%/.local/share/Lapsa/Recovery/copy.txt"_s << int{EEXIST};
        QTest::newRow("the original path is relative")
            << u"a.txt"_s << u"%home%/.local/share/Lapsa/Recovery/copy.txt"_s << int{EINVAL};
        QTest::newRow("the original path is empty")
            << QString() << u"%home%/.local/share/Lapsa/Recovery/copy.txt"_s << int{EINVAL};
        QTest::newRow("the copy is the home folder") << u"%home%/a.txt"_s << u"%home%"_s << int{EPERM};
        QTest::newRow("the copy is the root") << u"%home%/a.txt"_s << u"/"_s << int{EPERM};
    }

    void aRestoreThatFailsIsLoggedAndKeepsRecordAndCopy()
    {
        if (!test::inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(QString, originalPath);
        QFETCH(QString, recoveryPath);
        QFETCH(int, code);
        test::StoreWorld world(false);
        world.home.makeFile(u"in the way"_s);
        world.home.makeFile(recoveryFolder + u"/copy.txt"_s, "bytes");
        const QString home = world.home.path({});
        const LapsaRecoveryItem parked =
            record(originalPath.replace(u"%home%"_s, home), recoveryPath.replace(u"%home%"_s, home), distantFuture);
        startWith(world, {parked});
        const test::LogCapture log;

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(log.lines(),
                 QStringList{u"Lapsa recovery restore failed: "_s + FileError::fromErrno(code).description});
        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QCOMPARE(content(world.home.path(recoveryFolder + u"/copy.txt"_s)), QByteArray("bytes"));
    }

    void deletingByHandRemovesTheCopyAndTheRecord()
    {
        test::StoreWorld world;
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
        if (!test::inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(QString, recoveryPath);
        test::StoreWorld world(false);
        world.home.makeFile(u"kept.txt"_s);
        const LapsaRecoveryItem parked =
            record(world.home.path(u"a"_s), recoveryPath.replace(u"%home%"_s, world.home.path({})), distantFuture);
        startWith(world, {parked});
        const test::LogCapture log;

        world.store().deleteRecoveryItem(parked);

        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(world.home.names({}), QStringList({u".local"_s, u"kept.txt"_s}));
        QVERIFY(QFile::exists(world.home.dataPath(u"state.json"_s)));
    }

    void threeDeletionsInABurstAreOneWrite()
    {
        test::StoreWorld world;
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
            test::StoreWorld world(false);
            const QString copy = world.home.makeFile(recoveryFolder + u"/copy"_s);
            LapsaRecoveryItem first = record(world.home.path(u"a"_s), copy, distantFuture);
            LapsaRecoveryItem second = first;
            second.recoveryPath = world.home.makeFile(recoveryFolder + u"/other copy"_s);
            const LapsaRecoveryItem other = record(world.home.path(u"b"_s), copy, distantFuture);
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
        test::StoreWorld world;
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
        test::StoreWorld world;
        park(world, u"a.txt"_s);
        QFile::remove(world.home.dataPath(recoveryName));

        world.store().purgeExpiredRecovery();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(recoveryName).isNull());
        QCOMPARE(world.store().recoveryItems().size(), 1);
    }

    void aPurgeDropsTheRecordOfACopyThatCannotBeRemovedAndGoesOn()
    {
        if (!test::inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/copy"_s);
        startWith(world, {record(u"/a"_s, world.home.path(u"missing"_s), world.time.now() + 1h),
                          record(u"/a"_s, world.home.path({}), world.time.now() + 1h),
                          record(u"/a"_s, copy, world.time.now() + 1h)});
        const test::LogCapture log;
        world.time.advance(1h);

        world.store().purgeExpiredRecovery();

        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(!QFile::exists(copy));
        QVERIFY(QFile::exists(world.home.path({})));
        QCOMPARE(log.lines(), QStringList());
    }

    void aCopyThatLiesWhereAnEarlierOneLayKeepsItsOwnTime()
    {
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/copy"_s);
        startWith(world, {record(u"/a"_s, copy, world.time.now() + 1h), record(u"/a"_s, copy, world.time.now() + 2h)});

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
        test::StoreWorld world;
        world.home.makeFile(u"photos/2026/a.jpg"_s);
        std::ignore = world.store().deleteNow(world.add(world.home.path(u"photos"_s)));
        world.time.advance(24h);

        world.store().purgeExpiredRecovery();

        QCOMPARE(world.home.names(recoveryFolder), QStringList());
    }

    void aLaterChangeOfTheRetentionLeavesTheRecordsAlone()
    {
        test::StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);

        world.changeSettings([](LapsaSettings& settings) { settings.recoveryRetentionHours = 1; });
        world.time.advance(2h);
        world.store().purgeExpiredRecovery();

        QCOMPARE(world.store().recoveryItems(), QList{parked});
    }

    void whatAnInterruptedRestoreLeftIsRemovedAtStart()
    {
        test::StoreWorld world(false);
        const QString kept = world.home.makeFile(u"Documents/.lapsa-copy-kept"_s);
        makeLeftover(world, u"Documents"_s);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        const LapsaRecoveryItem parked = record(world.home.path(u"Documents/a.txt"_s), copy, world.time.now() + 1h);
        world.home.writeDataFile(noteName, JSONEncoder::lapsa().encode(QList{parked}));

        startWith(world, {parked});

        QCOMPARE(world.home.names(u"Documents"_s), QStringList{u".lapsa-copy-kept"_s});
        QVERIFY(QFile::exists(copy));
        QVERIFY(world.home.dataFile(noteName).isNull());
    }

    void aStartLooksIntoNoFolderInWhichNoRestoreWasUnderWay()
    {
        test::StoreWorld world(false);
        makeLeftover(world, u"Documents"_s);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);

        startWith(world, {record(world.home.path(u"Documents/a.txt"_s), copy, world.time.now() + 1h)});

        QCOMPARE(world.home.names(u"Documents"_s).size(), 1);
    }

    void aFolderThatIsAwayIsLookedForUntilTheRecordsTimeIsUp()
    {
        test::StoreWorld world(false);
        const LapsaRecoveryItem parked =
            record(world.home.path(u"Documents/a.txt"_s), QString(), world.time.now() + 1h);
        world.home.writeDataFile(noteName, JSONEncoder::lapsa().encode(QList{parked}));
        startWith(world, {});
        QVERIFY(!world.home.dataFile(noteName).isNull());
        makeLeftover(world, u"Documents"_s);

        world.start();

        QCOMPARE(world.home.names(u"Documents"_s), QStringList());
        QVERIFY(world.home.dataFile(noteName).isNull());

        world.home.writeDataFile(noteName, JSONEncoder::lapsa().encode(QList{parked}));
        QVERIFY(QDir().rmdir(world.home.path(u"Documents"_s)));
        world.time.advance(1h);
        world.start();
        QVERIFY(world.home.dataFile(noteName).isNull());
    }

    void aRestoreToAnotherFileSystemIsNotedUntilItHasWorked()
    {
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        test::StoreWorld world;
        test::PrivateMounts mounts;
        const QString volume = world.home.path(u"volume"_s);
        mounts.mountTemporary(volume);
        const LapsaRecoveryItem parked = park(world, u"volume/a.txt"_s, QByteArray(100'000, 'x'));
        mounts.unmount(volume);
        mounts.mountTemporary(volume, "size=16k");

        world.store().restoreRecoveryItem(parked); // there is no room
        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QVERIFY(world.home.dataFile(noteName).contains("a.txt"));

        mounts.unmount(volume);
        mounts.mountTemporary(volume);
        world.store().restoreRecoveryItem(parked);
        QCOMPARE(content(parked.originalPath).size(), 100'000);
        QVERIFY(world.home.dataFile(noteName).isNull());
    }

    void savingTheRecoveryListNowLeavesNoWriteWaiting()
    {
        test::StoreWorld world;
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
        test::StoreWorld world;
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
