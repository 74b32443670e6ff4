// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "LogCapture.h"
#include "Privileges.h"
#include "StoreSetup.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <cerrno>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

using Results = QList<RecoveryResult>;

/// What the store says of copies; counts how often.
struct Heard
{
    Results results;
    int times = 0;

    [[nodiscard]] LapsaStore::RecoveryDone listener()
    {
        return [this](const Results& told) {
            results += told;
            ++times;
        };
    }
};

QList<QUuid> idsOf(const QList<LapsaRecoveryItem>& records)
{
    QList<QUuid> ids;
    for (const LapsaRecoveryItem& record : records) {
        ids.push_back(record.id);
    }
    return ids;
}

} // namespace

/// What the user asks of copies in Recovery, and what is told of it.
class LapsaStore_putting_back_test final : public QObject
{
    Q_OBJECT

private slots:

    void itTellsWhereEachFileIsInTheOrderOfTheIds()
    {
        StoreWorld world;
        const LapsaRecoveryItem first = park(world, u"a.txt"_s, "first");
        const LapsaRecoveryItem second = park(world, u"folder/b.txt"_s, "second");
        const QString taken = world.home.makeFile(u"a.txt"_s, "another");
        Heard heard;

        world.store().putBack({second.id, QUuid::createUuid(), first.id, second.id}, heard.listener());

        QCOMPARE(heard.times, 1);
        QCOMPARE(heard.results.size(), 2);
        QCOMPARE(heard.results[0].id, second.id);
        QCOMPARE(heard.results[0].path, second.originalPath);
        QVERIFY(!heard.results[0].otherPlace);
        QCOMPARE(heard.results[1].id, first.id);
        QCOMPARE(heard.results[1].path, world.home.path(u"a-1.txt"_s));
        QVERIFY(heard.results[1].otherPlace);
        QCOMPARE(contentOf(taken), QByteArray("another"));
        QCOMPARE(contentOf(heard.results[1].path), QByteArray("first"));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void nothingToPutBackIsToldToo()
    {
        StoreWorld world;
        Heard heard;

        world.store().putBack({QUuid::createUuid()}, heard.listener());

        QCOMPARE(heard.times, 1);
        QVERIFY(heard.results.isEmpty());
    }

    void aFailureIsToldAndKeepsRecordAndCopy()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"folder/a.txt"_s);
        const LapsaRecoveryItem other = park(world, u"b.txt"_s);
        QVERIFY(QDir().rmdir(world.home.path(u"folder"_s)));
        world.home.makeFile(u"folder"_s); // a file where the folder was
        const LogCapture log;
        Heard heard;

        world.store().putBack({parked.id, other.id}, heard.listener());

        QVERIFY(heard.results[0].error);
        QCOMPARE(heard.results[0].error->code, EEXIST);
        QVERIFY(heard.results[0].path.isEmpty());
        QVERIFY(!heard.results[1].error);
        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QVERIFY(QFile::exists(parked.recoveryPath));
        QCOMPARE(log.lines().size(), 1);
    }

    void aCopyThatIsGoneIsToldWithoutALogLine()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);
        QVERIFY(QFile::remove(parked.recoveryPath));
        const LogCapture log;
        Heard heard;

        world.store().putBack({parked.id}, heard.listener());

        QVERIFY(heard.results[0].copyGone);
        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(world.store().recoveryItems(), QList{parked});
    }

    void aFolderNobodyMayWriteToKeepsTheCopy()
    {
        if (!PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        StoreWorld world;
        PrivateMounts mounts;
        const QString volume = world.home.path(u"volume"_s);
        mounts.mountTemporary(volume);
        const LapsaRecoveryItem parked = park(world, u"volume/a.txt"_s);
        mounts.makeReadOnly(volume);
        Heard heard;

        world.store().putBack({parked.id}, heard.listener());

        QCOMPARE(heard.results[0].error->code, EROFS);
        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QVERIFY(QFile::exists(parked.recoveryPath));
    }

    void itGoesAcrossFileSystemsWithoutOverwriting()
    {
        if (!PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        StoreWorld world;
        PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"volume"_s));
        world.home.makeFile(u"volume/album/1.txt"_s, "one");
        const LapsaRecoveryItem parked = park(world, u"volume/album/2.txt"_s, "two");
        const LapsaRecoveryItem folder = [&] {
            world.store().deleteNow(world.add(world.home.path(u"volume/album"_s)));
            return world.store().recoveryItems().constLast();
        }();
        Heard heard;

        world.store().putBack({folder.id, parked.id}, heard.listener());

        QVERIFY(!heard.results[0].error && !heard.results[1].error);
        QCOMPARE(world.home.names(u"volume/album"_s), (QStringList{u"1.txt"_s, u"2.txt"_s}));
        QCOMPARE(contentOf(world.home.path(u"volume/album/2.txt"_s)), QByteArray("two"));
        QVERIFY(world.home.names(recoveryFolder).isEmpty());
        QVERIFY(world.home.dataFile(u"restoring.json"_s).isNull());
    }

    void aDeadDiskHoldsUpItsOwnFilesOnly()
    {
        StoreWorld world;
        const LapsaRecoveryItem here = park(world, u"here/a.txt"_s);
        const LapsaRecoveryItem there = park(world, u"there/b.txt"_s);
        world.lanes.addMount(world.home.path(u"there"_s));
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        Heard heard;

        world.store().putBack({there.id, here.id}, heard.listener());
        QVERIFY(world.store().recoveryActions().isUnderWay(there.id));
        const std::size_t jobs = world.lanes.waiting();
        QVERIFY(jobs >= 2); // a lane for each

        world.lanes.runAll();
        QCOMPARE(heard.times, 1);
        QCOMPARE(idsOf({there, here}), (QList{heard.results[0].id, heard.results[1].id}));
        QVERIFY(!world.store().recoveryActions().isWorking());
    }

    void whatIsStoppedStays()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        const LogCapture log;
        Heard heard;
        world.store().putBack({parked.id}, heard.listener());

        world.store().stopRecoveryAction(parked.id);
        world.lanes.runAll();

        QCOMPARE(heard.results[0].error->code, ECANCELED);
        QCOMPARE(log.lines(), QStringList());
        QVERIFY(QFile::exists(parked.recoveryPath));
        QCOMPARE(world.store().recoveryItems(), QList{parked});
    }

    void twiceAtOnceIsDoneOnce()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        Heard first;
        Heard second;

        world.store().putBack({parked.id}, first.listener());
        world.store().putBack({parked.id}, second.listener());
        world.lanes.runAll();

        QCOMPARE(first.results[0].path, parked.originalPath);
        QVERIFY(second.results[0].copyGone);
        QCOMPARE(contentOf(parked.originalPath), QByteArray("bytes"));
    }

    void thousandsLeaveTheListInOneStep()
    {
        StoreWorld world;
        QList<LapsaRecoveryItem> parked;
        for (int number = 0; number < 40; ++number) {
            parked.push_back(park(world, QString::number(number)));
        }
        QSet<qsizetype> lengths;
        connect(&world.store(), &LapsaStore::willChange, this,
                [&] { lengths.insert(world.store().recoveryItems().size()); });
        Heard heard;

        world.store().putBack(idsOf(parked), heard.listener());

        QCOMPARE(heard.results.size(), 40);
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(lengths, QSet<qsizetype>{40});
    }

    void deletingRemovesCopiesForGoodAndTells()
    {
        StoreWorld world;
        const LapsaRecoveryItem file = park(world, u"a.txt"_s);
        world.home.makeFile(u"folder/b.txt"_s);
        world.store().deleteNow(world.add(world.home.path(u"folder"_s)));
        const LapsaRecoveryItem folder = world.store().recoveryItems().constLast();
        const LapsaRecoveryItem kept = park(world, u"kept.txt"_s);
        Heard heard;

        world.store().deleteRecoveryItems({file, folder}, heard.listener());

        QCOMPARE(heard.results.size(), 2);
        QVERIFY(!heard.results[0].error && !heard.results[1].error);
        QCOMPARE(world.home.names(recoveryFolder), QStringList{u"kept.txt"_s});
        QCOMPARE(world.store().recoveryItems(), QList{kept});
    }

    void nothingOutsideRecoveryIsDeletedWhateverTheRecordSays()
    {
        StoreWorld world(false);
        const QString precious = world.home.makeFile(u"precious.txt"_s);
        const LapsaRecoveryItem hostile = recordAt(precious, distantFuture);
        startWith(world, {hostile});
        Heard heard;

        world.store().deleteRecoveryItems({hostile}, heard.listener());

        QCOMPARE(heard.results[0].error->code, EPERM);
        QVERIFY(QFile::exists(precious));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void whatHasNoRecordIsPutBackToo()
    {
        StoreWorld world;
        world.home.makeFile(recoveryFolder + u"/lost.txt"_s, "lost");
        QList<LapsaRecoveryItem> found;
        world.store().findRecoveryContent([&](const RecoveryContent& content) { found = content.withoutRecord; });
        Heard heard;

        world.store().putBackItems(found, heard.listener());

        QCOMPARE(heard.results.size(), 1);
        QCOMPARE(contentOf(world.home.path(u"lost.txt"_s)), QByteArray("lost"));
        QVERIFY(world.home.names(recoveryFolder).isEmpty());
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_putting_back_test)
#include "LapsaStore_putting_back_test.moc"
