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
#include <optional>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString settingsName = u"settings.json"_s;
const QString stateName = u"state.json"_s;
const QString recoveryName = u"recovery.json"_s;
const QByteArray emptyList = "[]\n";

/// Takes a file away, so that the next write of it shows by its coming back.
void takeAway(const StoreWorld& world, const QString& name)
{
    QFile::remove(world.home.dataPath(name));
}

bool isThere(const StoreWorld& world, const QString& name)
{
    return !world.home.dataFile(name).isNull();
}

} // namespace

class LapsaStore_test final : public QObject
{
    Q_OBJECT

private slots:

    void theDataFolderHoldsTheThreeFilesAndTheRecoveryFolderAlone()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s));
        world.store().deleteNow(world.item(world.home.path(u"a.txt"_s)));
        world.letSavesPass();

        QCOMPARE(world.home.names(u".local/share/Lapsa"_s),
                 QStringList({u"Recovery"_s, recoveryName, settingsName, stateName}));
    }

    void theFilesAreForTheUserAlone()
    {
        const StoreWorld world;
        constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

        for (const QString& name : {settingsName, stateName, recoveryName}) {
            QCOMPARE(QFile(world.home.dataPath(name)).permissions(), ownerOnly);
        }
    }

    void settingsWrittenThroughTheStoreAreClampedBeforeAnyoneSeesThem()
    {
        StoreWorld world;
        QSignalSpy changes(&world.settingsStore(), &SettingsStore::settingsChanged);

        world.changeSettings([](LapsaSettings& settings) { settings.defaultExpirationMinutes = 0; });

        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.first().first().value<LapsaSettings>().defaultExpirationMinutes, 1);
        QCOMPARE(world.store().settings().defaultExpirationMinutes, 1);
    }

    void settingsWrittenPastTheStoreAreNotClamped()
    {
        StoreWorld world;
        LapsaSettings odd = world.store().settings();
        odd.defaultExpirationMinutes = 600000;

        world.settingsStore().setSettings(odd);

        QCOMPARE(world.store().settings().defaultExpirationMinutes, 600000);
    }

    void threeRequestsToSaveSoonAreOneWrite()
    {
        StoreWorld world;
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
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));

        world.store().saveNow();

        QCOMPARE(world.home.dataFile(stateName), JSONEncoder::lapsa().encode(QList{item}));
        takeAway(world, stateName);
        world.time.advance(1h);
        QVERIFY(!isThere(world, stateName));
    }

    void aStoreThatIsGoneSavesNothing()
    {
        StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s));

        world.stop();
        world.time.advance(1h);

        QCOMPARE(world.home.dataFile(stateName), emptyList);
    }

    void theThemeIsAppliedAtStartAndAfterEveryChangeOfTheSettings()
    {
        StoreWorld world(false);
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
        StoreWorld world;
        takeAway(world, stateName);
        QSignalSpy announcements(&world.store(), &LapsaStore::willChange);

        world.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });

        QCOMPARE(announcements.size(), 1);
        QVERIFY(!isThere(world, stateName));
    }

    void aStoreThatIsGoneIgnoresSettings()
    {
        StoreWorld world;
        SettingsStore settingsStore(world.time, world.fileWriter());
        {
            const LapsaStore store(settingsStore, {.clock = world.time,
                                                   .mainQueue = world.time,
                                                   .lanes = world.lanes,
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
        StoreWorld world;
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
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        takeAway(world, stateName);
        takeAway(world, recoveryName);
        QVERIFY(QDir().mkpath(world.home.dataPath(stateName + u"/in the way"_s)));
        const LogCapture log;

        world.letSavesPass();

        QCOMPARE(log.lines(), QStringList{u"Lapsa state save failed: "_s + FileError::fromErrno(EISDIR).description});
        QCOMPARE(world.store().items(), QList{item});
        QVERIFY(isThere(world, recoveryName));
    }

    void aFailedWriteOfTheRecoveryListIsLogged()
    {
        StoreWorld world;
        takeAway(world, recoveryName);
        QVERIFY(QDir().mkpath(world.home.dataPath(recoveryName + u"/in the way"_s)));
        const LogCapture log;

        world.store().saveRecoveryNow();

        QCOMPARE(log.lines(),
                 QStringList{u"Lapsa recovery save failed: "_s + FileError::fromErrno(EISDIR).description});
    }

    void aListChangeIsAnnouncedBeforeItTakesEffect()
    {
        StoreWorld world;
        QList<qsizetype> sizes;
        connect(&world.store(), &LapsaStore::willChange, this, [&] { sizes.push_back(world.store().items().size()); });

        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.store().removeFromList(item);

        QCOMPARE(sizes, (QList<qsizetype>{0, 1}));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_test)

#include "LapsaStore_test.moc"
