// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// What lies in Recovery, with a record or without.
class LapsaStore_recovery_content_test final : public QObject
{
    Q_OBJECT

private slots:

    void everythingInRecoveryIsFound()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s, "12345");
        world.home.makeFile(recoveryFolder + u"/.hidden"_s, "123");
        world.home.makeFile(recoveryFolder + u"/lost/b.txt"_s, "1234567");
        const LapsaRecoveryItem gone = park(world, u"gone.txt"_s);
        QVERIFY(QFile::remove(gone.recoveryPath));
        std::optional<RecoveryContent> content;

        world.store().findRecoveryContent([&](const RecoveryContent& found) { content = found; });

        QVERIFY(content);
        QCOMPARE(content->copies.size(), 3);
        QCOMPARE(content->copies.value(parked.id), (RecoveryCopy{.name = u"a.txt"_s, .bytes = 5}));
        QCOMPARE(content->withoutRecord.size(), 2);
        for (const LapsaRecoveryItem& made : std::as_const(content->withoutRecord)) {
            const RecoveryCopy copy = content->copies.value(made.id);
            QCOMPARE(copy.isFolder, copy.name == u"lost"_s);
            QCOMPARE(made.displayName, copy.name);
            QCOMPARE(made.originalPath, world.home.path(copy.name)); // no download folder in this home
            QCOMPARE(made.purgeAfter, distantFuture);
        }
    }

    void aCopyThatCameMeanwhileIsNotTakenForOneWithoutARecord()
    {
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);
        world.store().deleteNow(item);
        const Lanes::Report moved = world.lanes.workOnNext();
        world.lanes.runAll();                                                // nothing more of the deletion
        QCOMPARE(world.home.names(recoveryFolder), QStringList{u"a.txt"_s}); // nobody has heard of it yet
        std::optional<RecoveryContent> content;

        world.store().findRecoveryContent([&](const RecoveryContent& found) { content = found; });
        const Lanes::Report looked = world.lanes.workOnNext();
        looked();
        QVERIFY(content && content->withoutRecord.isEmpty());

        content.reset();
        world.store().findRecoveryContent([&](const RecoveryContent& found) { content = found; });
        const Lanes::Report lookedAgain = world.lanes.workOnNext();
        moved();
        lookedAgain();
        QVERIFY(content && content->withoutRecord.isEmpty());
    }

    void foldersAreMeasured()
    {
        StoreWorld world;
        world.home.makeFile(recoveryFolder + u"/lost/b.txt"_s, "1234567");
        world.home.makeFile(recoveryFolder + u"/lost/deep/c.txt"_s, "123");
        world.home.makeFile(recoveryFolder + u"/file.txt"_s, "123");
        QHash<QString, std::int64_t> sizes;

        world.store().measureRecoveryFolders(
            {u"lost"_s, u"file.txt"_s, u"../Recovery"_s, u"none"_s},
            [&](const QHash<QString, std::int64_t>& measured) { sizes.insert(measured); });

        QCOMPARE(sizes, (QHash<QString, std::int64_t>{{u"lost"_s, 10}}));
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaStore_recovery_content_test)
#include "LapsaStore_recovery_content_test.moc"
