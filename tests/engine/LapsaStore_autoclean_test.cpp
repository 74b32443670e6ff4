// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "LogCapture.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <chrono>
#include <optional>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

QStringList sorted(QStringList names)
{
    names.sort();
    return names;
}

/// The birth time that the file system keeps of a path.
TimePoint birthTime(const QString& path)
{
    std::optional<TimePoint> time;
    const qsizetype slash = path.lastIndexOf(u'/');
    const auto listed = fileSystem::forEachVisibleEntry(path.left(slash), [&](const fileSystem::FolderEntry& entry) {
        if (entry.name() == QStringView(path).sliced(slash + 1)) {
            time = entry.creationDate();
        }
    });
    return listed && time ? *time : distantPast;
}

} // namespace

class LapsaStore_autoclean_test final : public QObject
{
    Q_OBJECT

private slots:

    void newFilesOfAWatchedFolderArePutOnCountdown()
    {
        StoreWorld world;
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.home.makeFile(u"watched/b.txt"_s);

        world.store().scanAutoCleanFolders();

        QCOMPARE(sorted(world.listedNames()), QStringList({u"a.txt"_s, u"b.txt"_s}));
        QCOMPARE(world.item(world.home.path(u"watched/a.txt"_s)).addedAt, world.time.now());
        world.letSavesPass();
        QVERIFY(world.home.dataFile(u"state.json"_s).contains("a.txt"));
    }

    void whilePausedNothingIsPutOnCountdown()
    {
        StoreWorld world;
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });

        world.store().scanAutoCleanFolders();
        QCOMPARE(world.listedNames(), QStringList());
        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = false; });
        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
    }

    void hiddenFilesAndFoldersAreNeverTaken()
    {
        StoreWorld world;
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.includeExistingFiles = true; });
        world.home.makeFile(u"watched/.hidden"_s);
        world.home.makeFile(u"watched/folder/a.txt"_s);
        QVERIFY(QFile::link(world.home.path(u"watched/folder"_s), world.home.path(u"watched/link to folder"_s)));
        QVERIFY(QFile::link(world.home.path(u"nowhere"_s), world.home.path(u"watched/dangling"_s)));

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList());
    }

    void aLinkToAFileIsTakenAsItself()
    {
        StoreWorld world;
        watch(world);
        const QString outside = world.home.makeFile(u"outside.txt"_s);
        QVERIFY(QFile::link(outside, world.home.path(u"watched/link"_s)));

        world.store().scanAutoCleanFolders();
        QCOMPARE(world.store().items().first().path, world.home.path(u"watched/link"_s));
        world.time.advance(24h);
        world.store().deleteExpiredItems();

        QVERIFY(QFile::exists(outside));
        QCOMPARE(world.home.names(u"watched"_s), QStringList());
    }

    void theDateOfCreationDecidesToTheSecond_data()
    {
        QTest::addColumn<int>("microseconds");
        QTest::addColumn<bool>("taken");

        // From the beginning of the second in which the file was made.
        QTest::newRow("the rule is of the second before") << -1 << true;
        QTest::newRow("the rule is of the same second, early") << 0 << true;
        QTest::newRow("the rule is of the same second, late") << 999'999 << true;
        QTest::newRow("the rule is of the second after") << 1'000'000 << false;
    }

    void theDateOfCreationDecidesToTheSecond()
    {
        QFETCH(int, microseconds);
        QFETCH(bool, taken);
        StoreWorld world;
        const TimePoint created = birthTime(world.home.makeFile(u"watched/a.txt"_s));
        if (created == distantPast) {
            QSKIP("This file system keeps no birth times");
        }
        watch(world, [&](LapsaAutoCleanFolderRule& rule) {
            rule.createdAt =
                std::chrono::floor<std::chrono::seconds>(created) + std::chrono::microseconds{microseconds};
        });

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.store().items().size(), taken ? 1 : 0);
    }

    void aFileWithoutADateOfCreationIsTakenWithTheExistingOnesAlone()
    {
        const QString withoutDates = u"/proc/sys/kernel/random"_s;
        StoreWorld world;
        watch(world, [&](LapsaAutoCleanFolderRule& rule) { rule.folderPath = withoutDates; });
        world.store().scanAutoCleanFolders();
        QCOMPARE(world.listedNames(), QStringList());

        world.changeSettings([](LapsaSettings& settings) { settings.autoCleanFolders[0].includeExistingFiles = true; });
        world.store().scanAutoCleanFolders();

        QVERIFY(world.listedNames().contains(u"boot_id"_s));
    }

    void includingExistingFilesLaterTakesThemAll()
    {
        StoreWorld world;
        world.home.makeFile(u"watched/old.txt"_s);
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.createdAt = distantFuture; });
        world.store().scanAutoCleanFolders();
        QCOMPARE(world.listedNames(), QStringList());

        world.changeSettings([](LapsaSettings& settings) { settings.autoCleanFolders[0].includeExistingFiles = true; });
        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList{u"old.txt"_s});
    }

    void aFileOnCountdownIsNotAddedAgain()
    {
        StoreWorld world;
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.store().scanAutoCleanFolders();
        const QList<LapsaItem> before = world.store().items();
        world.time.advance(1min);

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.store().items(), before);
    }

    void aFileOnCountdownIsKnownHoweverTheFolderIsWritten()
    {
        StoreWorld world;
        watch(world, [&](LapsaAutoCleanFolderRule& rule) { rule.folderPath = world.home.path(u"x/..//watched/"_s); });
        world.home.makeFile(u"watched/a.txt"_s);
        world.store().scanAutoCleanFolders();
        const QList<LapsaItem> before = world.store().items();
        QCOMPARE(before.size(), 1);
        world.time.advance(1min);

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.store().items(), before);
    }

    void aFileTakenOffTheListIsTakenAgainByTheNextScan()
    {
        StoreWorld world;
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.store().scanAutoCleanFolders();

        world.store().removeFromList(world.store().items().first());
        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
    }

    void foldersThatCannotBeScannedArePassedOverWithoutAWord()
    {
        StoreWorld world;
        for (const QString& path : {QString(), u"watched"_s, world.home.path(u"missing"_s),
                                    world.home.makeFile(u"a file"_s), u"relative/folder"_s}) {
            watch(world, [&](LapsaAutoCleanFolderRule& rule) { rule.folderPath = path; });
        }
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.enabled = false; });
        world.home.makeFile(u"watched/a.txt"_s);
        const LogCapture log;

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList());
        QCOMPARE(log.lines(), QStringList());
    }

    void lapsasOwnFilesAreNeverTaken_data()
    {
        QTest::addColumn<QString>("folder");

        QTest::newRow("the data folder") << u".local/share/Lapsa"_s;
        QTest::newRow("the recovery folder") << u".local/share/Lapsa/Recovery"_s;
        QTest::newRow("the data folder behind a link") << u"link"_s;
    }

    void lapsasOwnFilesAreNeverTaken()
    {
        QFETCH(QString, folder);
        StoreWorld world;
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"link"_s)));
        world.home.makeFile(u".local/share/Lapsa/Recovery/parked.txt"_s);
        watch(world, [&](LapsaAutoCleanFolderRule& rule) {
            rule.folderPath = world.home.path(folder);
            rule.includeExistingFiles = true;
        });

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList());
    }

    void twoFoldersAreScannedInTheirOrder()
    {
        StoreWorld world;
        watch(world, [&](LapsaAutoCleanFolderRule& rule) { rule.folderPath = world.home.makeFolder(u"second"_s); });
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.home.makeFile(u"second/b.txt"_s);

        world.store().scanAutoCleanFolders();

        QCOMPARE(world.listedNames(), QStringList({u"b.txt"_s, u"a.txt"_s}));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_autoclean_test)

#include "LapsaStore_autoclean_test.moc"
