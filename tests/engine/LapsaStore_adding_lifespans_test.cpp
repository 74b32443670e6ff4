// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "StoreSetup.h"

#include <QFile>
#include <QProcess>
#include <QTest>

#include <chrono>
#include <cstdint>
#include <limits>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

std::chrono::minutes lifespanOf(const LapsaItem& item)
{
    return std::chrono::duration_cast<std::chrono::minutes>(item.expiresAt - item.addedAt);
}

void setRules(StoreWorld& world, const QList<LapsaFileTypeRule>& rules)
{
    world.changeSettings([&](LapsaSettings& settings) { settings.fileTypeRules = rules; });
}

} // namespace

class LapsaStore_adding_lifespans_test final : public QObject
{
    Q_OBJECT

private slots:

    void aFolderGetsTheDefaultLifespanWhateverItsName()
    {
        StoreWorld world;

        world.store().addFiles(urlsOf({world.home.makeFolder(u"photos.jpg"_s), world.home.makeFile(u"photo.jpg"_s)}));

        QCOMPARE(lifespanOf(world.store().items().at(0)), 120min);
        QCOMPARE(lifespanOf(world.store().items().at(1)), 43200min);
    }

    void aLinkToAFolderCountsAsAFolder()
    {
        StoreWorld world;
        const QString link = world.home.path(u"link.jpg"_s);
        QVERIFY(QFile::link(world.home.makeFolder(u"photos"_s), link));

        world.store().addFiles(urlsOf({link}));

        QCOMPARE(world.store().items().first().path, link);
        QCOMPARE(lifespanOf(world.item(link)), 120min);
    }

    void aFileWithoutAnExtensionGetsTheDefaultLifespan()
    {
        StoreWorld world;
        setRules(world, {{.extensionsCSV = u", ,"_s, .lifespanMinutes = 7}});

        world.store().addFiles(urlsOf({world.home.makeFile(u"Makefile"_s)}));

        QCOMPARE(lifespanOf(world.store().items().first()), 120min);
    }

    void theFirstEnabledRuleDecides()
    {
        StoreWorld world;
        setRules(world, {{.extensionsCSV = u".pdf"_s, .lifespanMinutes = 5, .enabled = false},
                         {.extensionsCSV = u".pdf"_s, .lifespanMinutes = 7},
                         {.extensionsCSV = u".pdf"_s, .lifespanMinutes = 9}});

        world.store().addFiles(urlsOf({world.home.makeFile(u"Report.PDF"_s)}));

        QCOMPARE(lifespanOf(world.store().items().first()), 7min);
    }

    void aRulesLifespanIsBounded_data()
    {
        QTest::addColumn<qint64>("given");
        QTest::addColumn<qint64>("expected");

        QTest::newRow("a rule of 0 minutes gives 1 minute") << qint64{0} << qint64{1};
        QTest::newRow("a rule of 600000 minutes gives 525600") << qint64{600000} << qint64{525600};
    }

    void aRulesLifespanIsBounded()
    {
        QFETCH(qint64, given);
        StoreWorld world;
        LapsaSettings settings = world.store().settings();
        settings.fileTypeRules = {{.extensionsCSV = u".pdf"_s, .lifespanMinutes = given}};
        world.settingsStore().setSettings(settings); // past the store, which would clamp

        world.store().addFiles(urlsOf({world.home.makeFile(u"a.pdf"_s)}));

        QTEST(qint64{lifespanOf(world.store().items().first()).count()}, "expected");
    }

    void aFixedLifespanIsTakenAtItsWordFromOneMinuteUp_data()
    {
        QTest::addColumn<qint64>("given");
        QTest::addColumn<qint64>("expected");

        QTest::newRow("0 minutes give 1 minute") << qint64{0} << qint64{1};
        QTest::newRow("a negative lifespan gives 1 minute") << qint64{-10} << qint64{1};
        QTest::newRow("600000 minutes are given in full") << qint64{600000} << qint64{600000};
    }

    void aFixedLifespanIsTakenAtItsWordFromOneMinuteUp()
    {
        QFETCH(qint64, given);
        StoreWorld world;

        const LapsaItem item = world.add(world.home.makeFile(u"a.zip"_s), given);

        QTEST(qint64{lifespanOf(item).count()}, "expected");
    }

    void aDefaultBeyondAYearIsUsedInFullWhereNoRuleIsAsked()
    {
        StoreWorld world;
        LapsaSettings settings = world.store().settings();
        settings.defaultExpirationMinutes = 600000;
        world.settingsStore().setSettings(settings); // past the store, which would clamp

        world.store().addFiles(urlsOf({world.home.makeFile(u"a.odt"_s)}), {.applyFileTypeRules = false});
        world.store().addFiles(urlsOf({world.home.makeFile(u"b.odt"_s)}));

        QCOMPARE(lifespanOf(world.store().items().at(0)), 600000min);
        QCOMPARE(lifespanOf(world.store().items().at(1)), 525600min);
    }

    void withoutTheRulesAFileGetsTheDefaultLifespan()
    {
        StoreWorld world;

        world.store().addFiles(urlsOf({world.home.makeFile(u"a.zip"_s)}), {.applyFileTypeRules = false});

        QCOMPARE(lifespanOf(world.store().items().first()), 120min);
    }

    void aLifespanThatOverflowsEndsTheProcess()
    {
        // The only way to see an end of the process is to be another one.
        if (qEnvironmentVariableIsSet("LAPSA_TEST_OVERFLOW")) {
            StoreWorld world;
            world.add(world.home.makeFile(u"a.txt"_s), std::numeric_limits<std::int64_t>::max());
            return;
        }
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LAPSA_TEST_OVERFLOW"_s, u"1"_s);
        child.setProcessEnvironment(environment);

        child.start(QCoreApplication::applicationFilePath(), {u"aLifespanThatOverflowsEndsTheProcess"_s});

        QVERIFY(child.waitForFinished());
        QVERIFY(child.exitStatus() == QProcess::CrashExit || child.exitCode() != 0);
        QVERIFY(child.readAll().contains("does not fit"));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_adding_lifespans_test)

#include "LapsaStore_adding_lifespans_test.moc"
