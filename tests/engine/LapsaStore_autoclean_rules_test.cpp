// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <chrono>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

std::chrono::microseconds lifespan(const LapsaItem& item)
{
    return item.expiresAt - item.addedAt;
}

} // namespace

class LapsaStore_autoclean_rules_test final : public QObject
{
    Q_OBJECT

private slots:

    void withTheRulesOnTheFoldersOwnLifespanIsNotUsed()
    {
        StoreWorld world;
        watch(world, [](LapsaAutoCleanFolderRule& rule) { rule.lifespanMinutes = 7; });
        const QString plain = world.home.makeFile(u"watched/a.odt"_s);
        const QString archive = world.home.makeFile(u"watched/a.zip"_s);

        world.store().scanAutoCleanFolders();

        QCOMPARE(lifespan(world.item(plain)), 120min);
        QCOMPARE(lifespan(world.item(archive)), 10080min);
    }

    void withTheRulesOffEveryFileGetsTheFoldersLifespan()
    {
        StoreWorld world;
        watch(world, [](LapsaAutoCleanFolderRule& rule) {
            rule.lifespanMinutes = 7;
            rule.applyFileTypeRules = false;
        });
        const QString archive = world.home.makeFile(u"watched/a.zip"_s);

        world.store().scanAutoCleanFolders();

        QCOMPARE(lifespan(world.item(archive)), 7min);
    }

    void theScanLeavesTheRulesAndTheSettingsFileAlone()
    {
        StoreWorld world;
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        const LapsaSettings before = world.store().settings();
        QFile::remove(world.home.dataPath(u"settings.json"_s));

        world.store().scanAutoCleanFolders();
        world.letSavesPass();

        QCOMPARE(world.store().settings(), before);
        QVERIFY(world.home.dataFile(u"settings.json"_s).isNull());
    }

    void aNewFileTypeRuleIsEmptyAndSaved()
    {
        StoreWorld world;

        world.store().addFileTypeRule();
        world.letSavesPass();

        const LapsaFileTypeRule rule = world.store().settings().fileTypeRules.last();
        QCOMPARE(world.store().settings().fileTypeRules.size(), 4);
        QCOMPARE(rule.extensionsCSV, QString());
        QCOMPARE(rule.lifespanMinutes, 120);
        QVERIFY(rule.enabled);
        QVERIFY(world.home.dataFile(u"settings.json"_s).contains(rule.id.toByteArray(QUuid::WithoutBraces).toUpper()));
    }

    void aFileTypeRuleIsRemovedByItsId()
    {
        StoreWorld world;
        const QList<LapsaFileTypeRule> rules = world.store().settings().fileTypeRules;

        world.store().removeFileTypeRule(rules[1].id);
        world.store().removeFileTypeRule(QUuid::createUuid());

        QCOMPARE(world.store().settings().fileTypeRules, (QList{rules[0], rules[2]}));
    }

    void aNewFolderIsWatchedFromNowOn()
    {
        StoreWorld world;
        const QString folder = world.home.makeFolder(u"watched"_s);

        world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder));

        const LapsaAutoCleanFolderRule rule = world.store().settings().autoCleanFolders.last();
        const LapsaAutoCleanFolderRule expected{.id = rule.id, .folderPath = folder, .createdAt = world.time.now()};
        QCOMPARE(rule, expected);
        QCOMPARE(rule.lifespanMinutes, 10080);
        QCOMPARE(rule.lastScanAt, distantPast);
    }

    void theSameFolderIsNeverAddedTwice()
    {
        StoreWorld world;
        const QString folder = world.home.makeFolder(u"Watched"_s);
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder));
        world.letSavesPass();
        QFile::remove(world.home.dataPath(u"settings.json"_s));

        world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder));
        world.store().addAutoCleanFolder(QUrl::fromLocalFile(folder + u'/'));
        world.letSavesPass();
        QCOMPARE(world.store().settings().autoCleanFolders.size(), 1);
        QVERIFY(world.home.dataFile(u"settings.json"_s).isNull());

        world.store().addAutoCleanFolder(QUrl::fromLocalFile(world.home.makeFolder(u"watched"_s)));
        QCOMPARE(world.store().settings().autoCleanFolders.size(), 2);
    }

    void removingAFolderLeavesItsItemsOnCountdown()
    {
        StoreWorld world;
        watch(world);
        world.home.makeFile(u"watched/a.txt"_s);
        world.store().scanAutoCleanFolders();

        world.store().removeAutoCleanFolder(world.store().settings().autoCleanFolders.first().id);
        world.letSavesPass();

        QVERIFY(world.store().settings().autoCleanFolders.isEmpty());
        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
    }

    void editingTheRulesClampsThem()
    {
        StoreWorld world;
        LapsaSettings odd = world.store().settings();
        odd.fileTypeRules[0].lifespanMinutes = 0;
        world.settingsStore().setSettings(odd); // past the store, which would clamp

        world.store().addFileTypeRule();

        QCOMPARE(world.store().settings().fileTypeRules[0].lifespanMinutes, 1);
    }
};

QTEST_GUILESS_MAIN(LapsaStore_autoclean_rules_test)

#include "LapsaStore_autoclean_rules_test.moc"
