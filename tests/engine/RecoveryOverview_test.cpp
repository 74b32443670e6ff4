// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RecoveryOverview.h"
#include "StoreSetup.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

QStringList namesOf(const RecoveryOverview& overview)
{
    QStringList names;
    for (const LapsaRecoveryItem& entry : overview.entries()) {
        names.push_back(entry.displayName);
    }
    return names;
}

} // namespace

class RecoveryOverview_test final : public QObject
{
    Q_OBJECT

private slots:

    void theNewestComesFirst()
    {
        StoreWorld world;
        park(world, u"first"_s);
        world.time.advance(1min);
        park(world, u"second"_s);
        park(world, u"third"_s);
        RecoveryOverview overview(world.store());

        overview.watch();

        QCOMPARE(namesOf(overview), (QStringList{u"third"_s, u"second"_s, u"first"_s}));
        QCOMPARE(overview.count(), 3);
    }

    void theSizeIsKnownWhenEveryFolderIsMeasured()
    {
        StoreWorld world;
        park(world, u"file"_s, "12345");
        world.home.makeFile(u"folder/inside"_s, "123");
        world.store().deleteNow(world.add(world.home.path(u"folder"_s)));
        const QUuid folder = world.store().recoveryItems().constLast().id;
        RecoveryOverview overview(world.store());
        QVERIFY(!overview.bytes());
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);

        overview.watch();
        QCOMPARE(overview.count(), 2);
        world.lanes.runNext();
        QVERIFY(!overview.bytes());
        QVERIFY(!overview.copyOf(folder)->bytes);
        world.lanes.runAll();

        QCOMPARE(overview.bytes(), 8);
        QCOMPARE(overview.copyOf(folder)->bytes, 3);
    }

    void recordsWithoutACopyAreLeftOutAndCopiesWithoutARecordAreNot()
    {
        StoreWorld world;
        const LapsaRecoveryItem gone = park(world, u"gone"_s);
        QVERIFY(QFile::remove(gone.recoveryPath));
        world.home.makeFile(recoveryFolder + u"/lost"_s);
        RecoveryOverview overview(world.store());

        overview.watch();

        QCOMPARE(namesOf(overview), QStringList{u"lost"_s});
        QCOMPARE(overview.count(), 1);
        QVERIFY(overview.isWithoutRecord(overview.entries().constFirst().id));
    }

    void itFollowsTheRecordsOnlyWhileItIsWatched()
    {
        StoreWorld world;
        RecoveryOverview overview(world.store());
        QSignalSpy changes(&overview, &RecoveryOverview::changed);

        park(world, u"before"_s);
        QCoreApplication::processEvents();
        QCOMPARE(changes.size(), 0);

        overview.watch();
        changes.clear();
        park(world, u"meanwhile"_s);
        QCoreApplication::processEvents();
        QVERIFY(!changes.isEmpty());
        QCOMPARE(overview.copyOf(world.store().recoveryItems().constLast().id)->bytes, 5);

        overview.stopWatching();
        changes.clear();
        park(world, u"after"_s);
        QCoreApplication::processEvents();
        QCOMPARE(changes.size(), 0);
    }

    void whatIsTakenFromTheFolderByHandIsSeenByTheNextLook()
    {
        StoreWorld world;
        const QString lost = world.home.makeFile(recoveryFolder + u"/lost"_s);
        RecoveryOverview overview(world.store());
        overview.watch();
        QCOMPARE(overview.count(), 1);

        QVERIFY(QFile::remove(lost));
        overview.lookAgain();

        QCOMPARE(overview.count(), 0);
        QCOMPARE(overview.bytes(), 0);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::RecoveryOverview_test)
#include "RecoveryOverview_test.moc"
