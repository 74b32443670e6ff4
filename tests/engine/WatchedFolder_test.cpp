// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreWorld.h"
#include "WatchedFolder.h"

#include <QFile>
#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;
using watchedFolder::Outlook;

namespace {

constexpr qsizetype manyFiles = 1000;

LapsaAutoCleanFolderRule ruleFor(const test::StoreWorld& world)
{
    return {.folderPath = world.home.makeFolder(u"watched"_s), .createdAt = world.time.now()};
}

/// What is foretold, and what a scan then makes of the same rule with its existing files included.
void compareWithScan(test::StoreWorld& world, LapsaAutoCleanFolderRule rule)
{
    const auto files = watchedFolder::fileNames(rule, manyFiles);
    QVERIFY(files.has_value());
    const Outlook foretold = watchedFolder::outlook(world.store(), rule, *files);
    const qsizetype before = world.store().items().size();

    rule.includeExistingFiles = true;
    world.changeSettings([&](LapsaSettings& settings) { settings.autoCleanFolders = {rule}; });
    world.store().scanAutoCleanFolders();

    QCOMPARE(world.store().items().size() - before, foretold.taken);
}

} // namespace

class WatchedFolder_test final : public QObject
{
    Q_OBJECT

private slots:

    void onlyFilesAtTheTopThatAScanTakesAreCounted()
    {
        test::StoreWorld world;
        const LapsaAutoCleanFolderRule rule = ruleFor(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.home.makeFile(u"watched/b.txt"_s);
        world.home.makeFile(u"watched/.hidden"_s);
        world.home.makeFile(u"watched/folder/c.txt"_s);
        QVERIFY(QFile::link(world.home.path(u"nowhere"_s), world.home.path(u"watched/dangling"_s)));

        QStringList files = watchedFolder::fileNames(rule, manyFiles).value_or(QStringList());
        files.sort();

        QCOMPARE(files, QStringList({u"a.txt"_s, u"b.txt"_s}));
        compareWithScan(world, rule);
    }

    void whatIsOnCountdownIsNotTakenAgain()
    {
        test::StoreWorld world;
        const LapsaAutoCleanFolderRule rule = ruleFor(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.add(world.home.makeFile(u"watched/b.txt"_s));
        world.add(world.home.makeFile(u"elsewhere/a.txt"_s));

        QCOMPARE(watchedFolder::outlook(world.store(), rule, {u"a.txt"_s, u"b.txt"_s}),
                 (Outlook{.present = 2, .taken = 1, .shortestMinutes = 120, .longestMinutes = 120}));
        compareWithScan(world, rule);
    }

    void byTheRulesTheFolderSOwnLifespanDoesNotHold()
    {
        test::StoreWorld world;
        LapsaAutoCleanFolderRule rule = ruleFor(world);
        world.changeSettings([](LapsaSettings& settings) {
            settings.fileTypeRules = {{.extensionsCSV = u".zip"_s, .lifespanMinutes = 30}};
        });
        const QStringList files{u"a.zip"_s, u"b.txt"_s};

        QCOMPARE(watchedFolder::outlook(world.store(), rule, files),
                 (Outlook{.present = 2, .taken = 2, .shortestMinutes = 30, .longestMinutes = 120}));
        rule.applyFileTypeRules = false;
        QCOMPARE(watchedFolder::outlook(world.store(), rule, files),
                 (Outlook{.present = 2, .taken = 2, .shortestMinutes = 10080, .longestMinutes = 10080}));
    }

    void noMoreFilesAreLookedAtThanWanted()
    {
        test::StoreWorld world;
        const LapsaAutoCleanFolderRule rule = ruleFor(world);
        for (int number = 0; number < 5; ++number) {
            world.home.makeFile(u"watched/%1.txt"_s.arg(number));
        }

        QCOMPARE(watchedFolder::fileNames(rule, 3).value_or(QStringList()).size(), 3);
    }

    void aFolderThatCannotBeListedHasNoAnswer()
    {
        test::StoreWorld world;
        QCOMPARE(watchedFolder::fileNames({}, manyFiles), std::nullopt);
        QCOMPARE(watchedFolder::fileNames({.folderPath = world.home.path(u"gone"_s)}, manyFiles), std::nullopt);
        QCOMPARE(watchedFolder::fileNames({.folderPath = world.home.dataPath()}, manyFiles), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(WatchedFolder_test)
#include "WatchedFolder_test.moc"
