// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "ReadOnlyWorld.h"
#include "StoreWorld.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <cerrno>
#include <tuple>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

LapsaItem unknownItem()
{
    return {.id = u"unknown"_s,
            .path = u"/nowhere/at all"_s,
            .displayName = u"at all"_s,
            .addedAt = distantPast,
            .expiresAt = distantFuture};
}

/// An item as the state file holds it.
QByteArray record(const QByteArray& id)
{
    return R"({"addedAt":"2026-01-01T00:00:00Z","displayName":"x","expiresAt":"2027-01-01T00:00:00Z",)"
           R"("fiveMinuteWarningSent":false,"locked":false,"path":"/x","id":")" +
           id + "\"}";
}

/// Whether anything is written to the state file while every pending save passes.
bool savesItems(test::StoreWorld& world)
{
    QFile::remove(world.home.dataPath(u"state.json"_s));
    world.letSavesPass();
    return !world.home.dataFile(u"state.json"_s).isNull();
}

} // namespace

class LapsaStore_items_test final : public QObject
{
    Q_OBJECT

private slots:

    void lockingTwiceLeavesTheItemUnlockedWithItsTime()
    {
        test::StoreWorld world;
        const LapsaItem before = world.add(world.home.makeFile(u"a.txt"_s));

        world.store().toggleLock(before);
        QVERIFY(world.item(before.path).locked);
        // What counts is the lock in the list, not the one of the value passed in.
        world.store().toggleLock(before);

        QCOMPARE(world.item(before.path), before);
        QVERIFY(savesItems(world));
    }

    void lockingNeverAddsTime()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.time.advance(30s);
        world.store().toggleLock(item);
        world.time.advance(10min);
        world.store().deleteExpiredItems();
        QVERIFY(item.exists());

        world.store().toggleLock(item);
        world.store().deleteExpiredItems();

        QVERIFY(!item.exists());
        QVERIFY(world.store().items().isEmpty());
    }

    void aNewExpiryCountsFromNow_data()
    {
        QTest::addColumn<qint64>("minutes");
        QTest::addColumn<qint64>("expected");

        QTest::newRow("10080 minutes") << qint64{10080} << qint64{10080};
        QTest::newRow("0 minutes are one") << qint64{0} << qint64{1};
        QTest::newRow("-5 minutes are one") << qint64{-5} << qint64{1};
        QTest::newRow("600000 minutes, for nothing bounds them here") << qint64{600000} << qint64{600000};
    }

    void aNewExpiryCountsFromNow()
    {
        QFETCH(qint64, minutes);
        QFETCH(qint64, expected);
        test::StoreWorld world;
        LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.store().markWarningSent(item.id);
        world.time.advance(3min);

        world.store().updateExpiration(item, minutes);

        item.expiresAt = world.time.now() + std::chrono::minutes{expected};
        QCOMPARE(world.item(item.path), item); // with its warning to come again
        QVERIFY(savesItems(world));
    }

    void aNewExpiryLeavesALockedItemLocked()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.store().toggleLock(item);

        world.store().updateExpiration(item, 90);

        QVERIFY(world.item(item.path).locked);
        QCOMPARE(world.item(item.path).expiresAt, world.time.now() + 90min);
    }

    void deletingNowDisposesOfALockedItemToo()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 600);
        world.store().toggleLock(item);

        world.store().deleteNow(item);

        QVERIFY(!item.exists());
        QVERIFY(world.store().items().isEmpty());
        QCOMPARE(world.home.names(u".local/share/Lapsa/Recovery"_s), QStringList{u"a.txt"_s});
        QVERIFY(savesItems(world));
        QVERIFY(world.home.dataFile(u"recovery.json"_s).contains("\"displayName\" : \"a.txt\""));
    }

    void deletingNowDropsAnItemWhoseFileIsGone()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        QVERIFY(QFile::remove(item.path));
        const test::LogCapture log;

        world.store().deleteNow(item);

        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(log.lines(), QStringList());
    }

    void deletingNowDropsAnItemWhoseFileCannotBeDisposedOf()
    {
        if (!test::inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        test::StoreWorld world(false);
        // No add takes the home folder: an edited list has it.
        world.home.writeDataFile(u"state.json"_s,
                                 R"([{"addedAt":"2020-01-01T00:00:00Z","expiresAt":"2020-01-01T00:00:00Z","id":"1",
                                      "fiveMinuteWarningSent":false,"locked":false,"displayName":"home","path":")" +
                                     world.home.path({}).toUtf8() + R"("}])");
        world.start();
        const LapsaItem item = world.store().items().first();
        const test::LogCapture log;

        world.store().deleteNow(item);

        QVERIFY(item.exists());
        QVERIFY(world.store().items().isEmpty());
        QCOMPARE(log.lines(), QStringList{u"Lapsa failed to delete "_s + item.path + u": "_s +
                                          FileError::fromErrno(EPERM).description});
    }

    void removingFromTheListLeavesTheFile()
    {
        test::StoreWorld world;
        const LapsaItem kept = world.add(world.home.makeFile(u"kept.txt"_s));
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.letSavesPass();

        world.store().removeFromList(item);
        world.letSavesPass();

        QVERIFY(item.exists());
        QCOMPARE(world.store().items(), QList{kept});
        QVERIFY(!world.home.dataFile(u"state.json"_s).contains("a.txt"));
    }

    void removingRemovesEveryItemOfThatId()
    {
        test::StoreWorld world(false);
        world.home.writeDataFile(u"state.json"_s, '[' + record("1") + ',' + record("2") + ',' + record("1") + ']');
        world.start();

        world.store().removeFromList(world.store().items().first());

        QCOMPARE(world.store().items().size(), 1);
        QCOMPARE(world.store().items().first().id, u"2"_s);
    }

    void lockingByIdNeverUnlocks()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));

        world.store().lockItem(item.id);
        world.store().lockItem(item.id);

        QVERIFY(world.item(item.path).locked);
        QVERIFY(savesItems(world));
    }

    void anUnknownIdChangesNothingAndWritesNothing()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.letSavesPass();
        QSignalSpy announcements(&world.store(), &LapsaStore::willChange);

        world.store().lockItem(u"unknown"_s);
        world.store().toggleLock(unknownItem());
        world.store().updateExpiration(unknownItem(), 10);
        world.store().markWarningSent(u"unknown"_s);

        QCOMPARE(world.store().items(), QList{item});
        QCOMPARE(announcements.size(), 0);
        QVERIFY(!savesItems(world));
    }

    void removingAnUnknownItemSavesAllTheSame()
    {
        test::StoreWorld world;

        world.store().removeFromList(unknownItem());

        QVERIFY(savesItems(world));
    }

    void openingAndRevealingHandTheFileToTheDesktop()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"100% #1?.txt"_s));

        world.store().open(item);
        world.store().reveal(item);
        world.store().reveal(unknownItem()); // the desktop may make of it what it likes

        QCOMPARE(world.workspace.opened, QList{QUrl::fromLocalFile(item.path)});
        QCOMPARE(world.workspace.revealed, (QList{QUrl::fromLocalFile(item.path), unknownItem().url()}));
    }

    void theFilePathIsCopiedAsItIs()
    {
        test::StoreWorld world;

        world.store().copyFilePath(world.add(world.home.makeFile(u"a b%20.txt"_s)));

        QCOMPARE(world.pasteboard.texts, QStringList{world.home.path(u"a b%20.txt"_s)});
    }

    void theFolderPathDependsOnWhatIsThere()
    {
        test::StoreWorld world;
        const LapsaItem folder = world.add(world.home.makeFolder(u"folder"_s));
        const LapsaItem file = world.add(world.home.makeFile(u"folder/a.txt"_s));
        const LapsaItem gone = world.add(world.home.makeFile(u"elsewhere/b.txt"_s));
        QVERIFY(QFile::remove(gone.path));

        world.store().copyFolderPath(folder);
        world.store().copyFolderPath(file);
        world.store().copyFolderPath(gone);

        QCOMPARE(world.pasteboard.texts, QStringList({folder.path, folder.path, world.home.path(u"elsewhere"_s)}));
    }
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_items_test)

#include "LapsaStore_items_test.moc"
