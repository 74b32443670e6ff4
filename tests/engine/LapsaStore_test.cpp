// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONEncoder.h"
#include "LogCapture.h"
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

const QString settingsName = u"settings.json"_s;
const QString stateName = u"state.json"_s;
const QString recoveryName = u"recovery.json"_s;
const QByteArray emptyList = "[]\n";

LapsaItem itemAt(const QString& path, TimePoint expiresAt)
{
    return {.id = newItemId(), .path = path, .displayName = u"item"_s, .addedAt = distantPast, .expiresAt = expiresAt};
}

LapsaRecoveryItem recordAt(const QString& path, TimePoint purgeAfter)
{
    return {.id = QUuid::createUuid(),
            .originalPath = path,
            .recoveryPath = path,
            .displayName = u"record"_s,
            .deletedAt = distantPast,
            .purgeAfter = purgeAfter};
}

template <typename T>
QByteArray encoded(const QList<T>& list)
{
    return JSONEncoder::lapsa().encode(list);
}

/// Takes a file away, so that the next write of it shows by its coming back.
void takeAway(const test::StoreWorld& world, const QString& name)
{
    QFile::remove(world.home.dataPath(name));
}

bool isThere(const test::StoreWorld& world, const QString& name)
{
    return !world.home.dataFile(name).isNull();
}

/// The names of the copies that the log tells about; whatever else it says is among them too.
QStringList keptBy(const test::LogCapture& log)
{
    QStringList names;
    for (const QString& line : log.lines()) {
        names += line.contains(u", a copy is kept: "_s) ? line.section(u'/', -1) : line;
    }
    return names;
}

QByteArray keptContent(const test::StoreWorld& world, const QString& name)
{
    QFile file(world.home.path(u".local/state/Lapsa/"_s + name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class LapsaStore_test final : public QObject
{
    Q_OBJECT

private slots:

    void theFirstStartLeavesTwoEmptyLists()
    {
        test::StoreWorld world(false);

        world.start();

        QCOMPARE(world.home.dataFile(stateName), emptyList);
        QCOMPARE(world.home.dataFile(recoveryName), emptyList);
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(world.store().lastMessage(), std::nullopt);
    }

    void theDataFolderHoldsTheThreeFilesAndTheRecoveryFolderAlone()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s));
        std::ignore = world.store().deleteNow(world.item(world.home.path(u"a.txt"_s)));
        world.letSavesPass();

        QCOMPARE(world.home.names(u".local/share/Lapsa"_s),
                 QStringList({u"Recovery"_s, recoveryName, settingsName, stateName}));
    }

    void theFilesAreForTheUserAlone()
    {
        const test::StoreWorld world;
        constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

        for (const QString& name : {settingsName, stateName, recoveryName}) {
            QCOMPARE(QFile(world.home.dataPath(name)).permissions(), ownerOnly);
        }
    }

    void listsThatCanBeReadAreKeptAsTheyAre()
    {
        test::StoreWorld world(false);
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
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(u".local/share/Lapsa/Recovery/a.txt"_s);
        world.home.writeDataFile(stateName, content);
        const QByteArray records = encoded(QList{recordAt(copy, distantFuture)});
        world.home.writeDataFile(recoveryName, records);
        const test::LogCapture log;

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
        test::StoreWorld world(false);
        const test::LogCapture log;

        world.start();
        world.letSavesPass();
        world.start();

        QCOMPARE(log.lines(), QStringList());
        QVERIFY(!QFile::exists(world.home.path(u".local/state/Lapsa/state-1.json"_s)));
    }

    void anEmptyRecoveryListIsNotKept()
    {
        test::StoreWorld world(false);
        world.home.writeDataFile(stateName, "{");
        world.home.writeDataFile(recoveryName, emptyList);
        const test::LogCapture log;

        world.start();

        QCOMPARE(keptBy(log), QStringList{u"state-1.json"_s});
    }

    void whatTheFirstVersionWroteIsRead()
    {
        test::StoreWorld world(false);
        for (const QString& name : {u"settings.json"_s, stateName, recoveryName}) {
            QFile file(QFINDTESTDATA("written-by/0.1.0/") + name);
            QVERIFY(file.open(QIODevice::ReadOnly));
            world.home.writeDataFile(name, file.readAll());
        }
        const test::LogCapture log;

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
        test::StoreWorld world(false);
        const QList items{itemAt(u"/tmp/a"_s, distantFuture)};
        world.home.writeDataFile(stateName, encoded(items));
        world.home.writeDataFile(recoveryName, "[{}]");
        const test::LogCapture log;

        world.start();

        QCOMPARE(world.store().items(), items);
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(world.home.dataFile(recoveryName), emptyList);
        QCOMPARE(keptBy(log), QStringList{u"recovery-1.json"_s});
        QCOMPARE(keptContent(world, u"recovery-1.json"_s), QByteArray("[{}]"));
    }

    void itemsThatExpiredMeanwhileAreLoadedUnchanged()
    {
        test::StoreWorld world(false);
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
        test::StoreWorld world(false);
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
        test::StoreWorld world(false);
        LapsaSettings odd = LapsaSettings::defaults();
        odd.notifyBeforeMinutes = 90;
        odd.recoveryRetentionHours = 0;
        world.home.writeDataFile(settingsName, JSONEncoder::lapsa().encode(odd));

        world.start();
        world.letSavesPass();

        QCOMPARE(world.store().settings(), sanitize(odd));
        QCOMPARE(world.home.dataFile(settingsName), JSONEncoder::lapsa().encode(sanitize(odd)));
    }

    void settingsWrittenThroughTheStoreAreClampedBeforeAnyoneSeesThem()
    {
        test::StoreWorld world;
        QSignalSpy changes(&world.settingsStore(), &SettingsStore::settingsChanged);

        world.changeSettings([](LapsaSettings& settings) { settings.defaultExpirationMinutes = 0; });

        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first().first().value<LapsaSettings>().defaultExpirationMinutes, 1);
        QCOMPARE(world.store().settings().defaultExpirationMinutes, 1);
    }

    void settingsWrittenPastTheStoreAreNotClamped()
    {
        test::StoreWorld world;
        LapsaSettings odd = world.store().settings();
        odd.defaultExpirationMinutes = 600000;

        world.settingsStore().setSettings(odd);

        QCOMPARE(world.store().settings().defaultExpirationMinutes, 600000);
    }

    void threeRequestsToSaveSoonAreOneWrite()
    {
        test::StoreWorld world;
        takeAway(world, stateName);
        takeAway(world, recoveryName);

        for (int request = 0; request < 3; ++request) {
            world.time.advance(100ms);
            world.store().saveSoon();
        }

        world.time.advance(299ms);
        QVERIFY(!isThere(world, stateName) && !isThere(world, recoveryName));
        world.time.advance(1ms);
        QVERIFY(isThere(world, stateName) && isThere(world, recoveryName));
        takeAway(world, stateName);
        takeAway(world, recoveryName);
        world.time.advance(1h);
        QVERIFY(!isThere(world, stateName) && !isThere(world, recoveryName));
    }

    void savingNowLeavesNoWriteWaiting()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));

        world.store().saveNow();

        QCOMPARE(world.home.dataFile(stateName), encoded(QList{item}));
        takeAway(world, stateName);
        world.time.advance(1h);
        QVERIFY(!isThere(world, stateName));
    }

    void aStoreThatIsGoneSavesNothing()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s));

        world.stop();
        world.time.advance(1h);

        QCOMPARE(world.home.dataFile(stateName), emptyList);
    }

    void theThemeIsAppliedAtStartAndAfterEveryChangeOfTheSettings()
    {
        test::StoreWorld world(false);
        LapsaSettings settings = LapsaSettings::defaults();
        settings.theme = LapsaTheme::Dark;
        world.home.writeDataFile(settingsName, JSONEncoder::lapsa().encode(settings));

        world.start();
        QCOMPARE(world.appearance.forced, (QList<std::optional<ColorScheme>>{ColorScheme::Dark}));
        world.time.settle();
        QCOMPARE(world.appearance.forced, (QList<std::optional<ColorScheme>>{ColorScheme::Dark, ColorScheme::Dark}));

        world.changeSettings([](LapsaSettings& changed) { changed.theme = LapsaTheme::Light; });
        QCOMPARE(world.appearance.forced.last(), std::optional(ColorScheme::Light));
        world.changeSettings([](LapsaSettings& changed) { changed.theme = LapsaTheme::System; });
        QCOMPARE(world.appearance.forced.last(), std::nullopt);
        const qsizetype before = world.appearance.forced.size();
        world.changeSettings([](LapsaSettings& changed) { changed.useTrash = false; });
        QCOMPARE(world.appearance.forced.size(), before + 1);
    }

    void aChangeOfTheThemeIsAnnouncedButSavesNoItems()
    {
        test::StoreWorld world;
        takeAway(world, stateName);
        QSignalSpy announcements(&world.store(), &LapsaStore::willChange);

        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });

        QCOMPARE(announcements.size(), 1);
        QVERIFY(!isThere(world, stateName));
    }

    void aStoreThatIsGoneIgnoresSettings()
    {
        test::StoreWorld world;
        SettingsStore settingsStore(world.time, world.fileWriter());
        {
            const LapsaStore store(settingsStore, {.clock = world.time,
                                                   .mainQueue = world.time,
                                                   .fileWriter = world.fileWriter(),
                                                   .appearance = world.appearance,
                                                   .workspace = world.workspace,
                                                   .pasteboard = world.pasteboard});
            settingsStore.setSettings(LapsaSettings::defaults());
        }
        world.appearance.forced.clear();

        world.time.settle();

        QVERIFY(world.appearance.forced.isEmpty());
    }

    void aMessageReplacesTheOneBefore()
    {
        test::StoreWorld world;
        QSignalSpy announcements(&world.store(), &LapsaStore::willChange);

        world.store().setLastMessage(u"one"_s);
        world.store().setLastMessage(u"two"_s);
        QCOMPARE(world.store().lastMessage(), std::optional(u"two"_s));
        world.store().setLastMessage(std::nullopt);
        QCOMPARE(world.store().lastMessage(), std::nullopt);

        QCOMPARE(announcements.size(), 3);
    }

    void aFailedWriteOfTheItemsIsLoggedAndTheRecoveryListIsWrittenStill()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        takeAway(world, stateName);
        takeAway(world, recoveryName);
        QVERIFY(QDir().mkpath(world.home.dataPath(stateName + u"/in the way"_s)));
        const test::LogCapture log;

        world.letSavesPass();

        QCOMPARE(log.lines(), QStringList{u"Lapsa state save failed: "_s + FileError::fromErrno(EISDIR).description});
        QCOMPARE(world.store().items(), QList{item});
        QVERIFY(isThere(world, recoveryName));
    }

    void aFailedWriteOfTheRecoveryListIsLogged()
    {
        test::StoreWorld world;
        takeAway(world, recoveryName);
        QVERIFY(QDir().mkpath(world.home.dataPath(recoveryName + u"/in the way"_s)));
        const test::LogCapture log;

        world.store().saveRecoveryNow();

        QCOMPARE(log.lines(),
                 QStringList{u"Lapsa recovery save failed: "_s + FileError::fromErrno(EISDIR).description});
    }

    void aListChangeIsAnnouncedBeforeItTakesEffect()
    {
        test::StoreWorld world;
        QList<qsizetype> sizes;
        connect(&world.store(), &LapsaStore::willChange, this, [&] { sizes.push_back(world.store().items().size()); });

        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.store().removeFromList(item);

        QCOMPARE(sizes, (QList<qsizetype>{0, 1}));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_test)

#include "LapsaStore_test.moc"
