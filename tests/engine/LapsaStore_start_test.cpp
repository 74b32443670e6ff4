// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "JSONEncoder.h"
#include "LogCapture.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <optional>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString settingsName = u"settings.json"_s;
const QString stateName = u"state.json"_s;
const QString recoveryName = u"recovery.json"_s;
const QByteArray emptyList = "[]\n";

template <typename T>
QByteArray encoded(const QList<T>& list)
{
    return JSONEncoder::lapsa().encode(list);
}

/// The names of the copies that the log tells about; whatever else it says is among them too.
QStringList keptBy(const LogCapture& log)
{
    QStringList names;
    for (const QString& line : log.lines()) {
        names += line.contains(u", a copy is kept: "_s) ? line.section(u'/', -1) : line;
    }
    return names;
}

QByteArray keptContent(const StoreWorld& world, const QString& name)
{
    return contentOf(world.home.path(u".local/state/Lapsa/"_s + name));
}

} // namespace

class LapsaStore_start_test final : public QObject
{
    Q_OBJECT

private slots:

    void theFirstStartLeavesTwoEmptyLists()
    {
        StoreWorld world(false);

        world.start();

        QCOMPARE(world.home.dataFile(stateName), emptyList);
        QCOMPARE(world.home.dataFile(recoveryName), emptyList);
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(world.store().lastMessage(), std::nullopt);
    }

    void listsThatCanBeReadAreKeptAsTheyAre()
    {
        StoreWorld world(false);
        const QList items{itemAt(u"/tmp/b"_s, world.time.now() + 1h), itemAt(u"/tmp/a"_s, world.time.now() + 2h)};
        const QList records{recordAt(world.home.path(u"x"_s), world.time.now() + 1h)};
        world.home.writeDataFile(stateName, encoded(items));
        world.home.writeDataFile(recoveryName, encoded(records));

        world.start();
        world.letSavesPass();

        QCOMPARE(world.store().items(), items);
        QCOMPARE(world.store().recoveryItems(), records);
    }

    void anUnreadableItemListBecomesEmptyAndCostsTheRecoveryRecordsToo_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("kept");

        const LapsaItem item = itemAt(u"/tmp/a"_s, distantFuture);
        const QStringList both{u"state-1.json"_s, u"recovery-1.json"_s};
        QTest::newRow("one record lacks a key")
            << encoded(QList{item}).replace("\"fiveMinuteWarningSent\" : false,", "") << both;
        QTest::newRow("no JSON") << QByteArray("{") << both;
        QTest::newRow("empty") << QByteArray() << QStringList{u"recovery-1.json"_s};
    }

    void anUnreadableItemListBecomesEmptyAndCostsTheRecoveryRecordsToo()
    {
        QFETCH(QByteArray, content);
        QFETCH(QStringList, kept);
        StoreWorld world(false);
        const QString copy = world.home.makeFile(u".local/share/Lapsa/Recovery/a.txt"_s);
        world.home.writeDataFile(stateName, content);
        const QByteArray records = encoded(QList{recordAt(copy, distantFuture)});
        world.home.writeDataFile(recoveryName, records);
        const LogCapture log;

        world.start();

        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(world.home.dataFile(stateName), emptyList);
        QCOMPARE(world.home.dataFile(recoveryName), emptyList);
        QVERIFY(QFile::exists(copy));
        QCOMPARE(keptBy(log), kept);
        QCOMPARE(keptContent(world, u"recovery-1.json"_s), records);
        QCOMPARE(keptContent(world, u"state-1.json"_s), content);
    }

    void aFirstStartKeepsNothing()
    {
        StoreWorld world(false);
        const LogCapture log;

        world.start();
        world.letSavesPass();
        world.start();

        QCOMPARE(log.lines(), QStringList());
        QVERIFY(!QFile::exists(world.home.path(u".local/state/Lapsa/state-1.json"_s)));
    }

    void anEmptyRecoveryListIsNotKept()
    {
        StoreWorld world(false);
        world.home.writeDataFile(stateName, "{");
        world.home.writeDataFile(recoveryName, emptyList);
        const LogCapture log;

        world.start();

        QCOMPARE(keptBy(log), QStringList{u"state-1.json"_s});
    }

    void whatTheFirstVersionWroteIsRead()
    {
        StoreWorld world(false);
        for (const QString& name : {u"settings.json"_s, stateName, recoveryName}) {
            QFile file(QFINDTESTDATA("written-by/0.1.0/") + name);
            QVERIFY(file.open(QIODevice::ReadOnly));
            world.home.writeDataFile(name, file.readAll());
        }
        const LogCapture log;

        world.start();

        QCOMPARE(log.lines(), QStringList());
        QCOMPARE(world.store().settings().theme, LapsaTheme::Dark);
        QCOMPARE(world.store().settings().fileTypeRules.first().extensionsCSV, u".zip,.rar"_s);
        QCOMPARE(world.store().settings().autoCleanFolders.first().folderPath, u"/home/ada/Downloads"_s);
        QVERIFY(!world.store().items().isEmpty());
        QVERIFY(!world.store().recoveryItems().isEmpty());
    }

    void anUnreadableRecoveryListBecomesEmptyAndTheItemsStay()
    {
        StoreWorld world(false);
        const QList items{itemAt(u"/tmp/a"_s, distantFuture)};
        world.home.writeDataFile(stateName, encoded(items));
        world.home.writeDataFile(recoveryName, "[{}]");
        const LogCapture log;

        world.start();

        QCOMPARE(world.store().items(), items);
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(world.home.dataFile(recoveryName), emptyList);
        QCOMPARE(keptBy(log), QStringList{u"recovery-1.json"_s});
        QCOMPARE(keptContent(world, u"recovery-1.json"_s), QByteArray("[{}]"));
    }

    void itemsThatExpiredMeanwhileAreLoadedUnchanged()
    {
        StoreWorld world(false);
        const QList items{itemAt(world.home.makeFile(u"a.txt"_s), world.time.now() - 1h)};
        world.home.writeDataFile(stateName, encoded(items));
        world.home.writeDataFile(recoveryName, emptyList);

        world.start();
        world.letSavesPass();

        QCOMPARE(world.store().items(), items);
        QVERIFY(items.first().exists());
        world.store().deleteExpiredItems();
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(!items.first().exists());
    }

    void recoveryCopiesWhoseTimeIsUpArePurgedAtStart()
    {
        StoreWorld world(false);
        const QString due = world.home.makeFile(u".local/share/Lapsa/Recovery/due.txt"_s);
        const QString kept = world.home.makeFile(u".local/share/Lapsa/Recovery/kept.txt"_s);
        world.home.writeDataFile(stateName, emptyList);
        world.home.writeDataFile(
            recoveryName, encoded(QList{recordAt(due, world.time.now()), recordAt(kept, world.time.now() + 1s)}));

        world.start();

        QVERIFY(!QFile::exists(due));
        QVERIFY(QFile::exists(kept));
        QCOMPARE(world.store().recoveryItems().size(), 1);
        world.letSavesPass();
        QCOMPARE(world.home.dataFile(recoveryName), encoded(world.store().recoveryItems()));
    }

    void settingsOutOfRangeAreCorrectedOnDisk()
    {
        StoreWorld world(false);
        LapsaSettings odd = LapsaSettings::defaults();
        odd.notifyBeforeMinutes = 90;
        odd.recoveryRetentionHours = 0;
        world.home.writeDataFile(settingsName, JSONEncoder::lapsa().encode(odd));

        world.start();
        world.letSavesPass();

        QCOMPARE(world.store().settings(), sanitize(odd));
        QCOMPARE(world.home.dataFile(settingsName), JSONEncoder::lapsa().encode(sanitize(odd)));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_start_test)

#include "LapsaStore_start_test.moc"
