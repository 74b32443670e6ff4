// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileWriter.h"
#include "JSONEncoder.h"
#include "LogCapture.h"
#include "ManualLanes.h"
#include "ManualTime.h"
#include "Result.h"
#include "SettingsStore.h"
#include "TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

#include <cerrno>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString fileName = u"settings.json"_s;

QByteArray encoded(const LapsaSettings& settings)
{
    return JSONEncoder::lapsa().encode(settings);
}

LapsaSettings withLifespan(std::int64_t minutes)
{
    LapsaSettings settings = LapsaSettings::defaults();
    settings.defaultExpirationMinutes = minutes;
    return settings;
}

} // namespace

class SettingsStore_test final : public QObject
{
    Q_OBJECT

private slots:

    void aMissingFileIsReplacedByTheDefaultsAtOnce()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);

        const SettingsStore store(time, writer);

        QCOMPARE(store.settings(), LapsaSettings::defaults());
        QCOMPARE(home.dataFile(fileName), encoded(LapsaSettings::defaults()));
        QVERIFY(!store.savePending());
    }

    void anUnreadableFileIsReplacedByTheDefaultsAtOnce_data()
    {
        QTest::addColumn<QByteArray>("content");

        QTest::newRow("no JSON") << QByteArray("lapsa");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("a key is missing") << encoded(withLifespan(7)).replace("\"theme\" : \"system\",\n", "");
        QTest::newRow("another theme") << encoded(withLifespan(7)).replace("\"system\"", "\"blue\"");
        QTest::newRow("no list of folders") << encoded(withLifespan(7)).replace("\"autoCleanFolders\" : [],", "");
        QTest::newRow("a mistyped value") << encoded(withLifespan(7)).replace(" : 7,", " : \"7\",");
    }

    void anUnreadableFileIsReplacedByTheDefaultsAtOnce()
    {
        QFETCH(QByteArray, content);
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        home.writeDataFile(fileName, content);

        const SettingsStore store(time, writer);

        QCOMPARE(store.settings(), LapsaSettings::defaults());
        QCOMPARE(home.dataFile(fileName), encoded(LapsaSettings::defaults()));
        QFile kept(home.path(u".local/state/Lapsa/settings-1.json"_s));
        QCOMPARE(kept.open(QIODevice::ReadOnly), !content.isEmpty());
        QCOMPARE(kept.readAll(), content);
    }

    void aReadableFileIsRewrittenInNormalFormShortlyAfter()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        const QByteArray loose = encoded(withLifespan(7)).simplified();
        home.writeDataFile(fileName, loose);

        const SettingsStore store(time, writer);

        QCOMPARE(store.settings(), withLifespan(7));
        time.advance(349ms);
        QCOMPARE(home.dataFile(fileName), loose);
        time.advance(1ms);
        QCOMPARE(home.dataFile(fileName), encoded(withLifespan(7)));
    }

    void tenChangesWithin300MillisecondsAreOneWrite()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        SettingsStore store(time, writer);
        time.advance(1s);
        // Whatever is written before the time is up shows by the file coming back.
        QVERIFY(QFile::remove(home.dataPath(fileName)));

        for (int change = 1; change <= 10; ++change) {
            time.advance(30ms);
            store.setSettings(withLifespan(change));
            QVERIFY(home.dataFile(fileName).isNull());
        }
        time.advance(349ms);
        QVERIFY(home.dataFile(fileName).isNull());
        time.advance(1ms);
        QCOMPARE(home.dataFile(fileName), encoded(withLifespan(10)));

        QVERIFY(QFile::remove(home.dataPath(fileName)));
        time.advance(1h);
        QVERIFY(home.dataFile(fileName).isNull());
    }

    void savingNowLeavesNoWriteWaiting()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        SettingsStore store(time, writer);
        store.setSettings(withLifespan(7));
        QVERIFY(store.savePending());

        store.saveNow();

        QVERIFY(!store.savePending());
        QCOMPARE(home.dataFile(fileName), encoded(withLifespan(7)));
        QVERIFY(QFile::remove(home.dataPath(fileName)));
        time.advance(1h);
        QVERIFY(home.dataFile(fileName).isNull());
    }

    void everyAssignmentIsAnnounced()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        SettingsStore store(time, writer);
        QSignalSpy changes(&store, &SettingsStore::settingsChanged);

        store.setSettings(withLifespan(7));
        store.setSettings(withLifespan(7));

        QCOMPARE(changes.size(), 2);
        QCOMPARE(changes.last().first().value<LapsaSettings>(), withLifespan(7));
    }

    void aStoreThatIsGoneSavesNothing()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        {
            SettingsStore store(time, writer);
            store.setSettings(withLifespan(7));
        }

        time.advance(1h);

        QCOMPARE(home.dataFile(fileName), encoded(LapsaSettings::defaults()));
    }

    void aDataFolderThatVanishedIsMadeAgain()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        SettingsStore store(time, writer);
        QVERIFY(QFile::remove(home.dataPath(fileName)));
        QVERIFY(QDir().rmdir(home.dataPath()));

        store.saveNow();

        QCOMPARE(home.dataFile(fileName), encoded(store.settings()));
    }

    void aFailedWriteIsOneLineInTheLogAndTheSettingsStay()
    {
        const test::TemporaryHome home;
        test::ManualTime time;
        test::ManualLanes lanes(test::ManualLanes::Runs::AtOnce);
        FileWriter writer(lanes);
        home.makeFile(u".local/share/Lapsa"_s, "a file in the place of the data folder");
        const test::LogCapture log;

        SettingsStore store(time, writer);
        store.setSettings(withLifespan(7));
        time.advance(1s);

        const QString line = u"Lapsa settings save failed: "_s + FileError::fromErrno(ENOTDIR).description;
        QCOMPARE(log.lines(), QStringList({line, line}));
        QCOMPARE(store.settings(), withLifespan(7));
        QVERIFY(!store.savePending());
    }
};

QTEST_GUILESS_MAIN(SettingsStore_test)

#include "SettingsStore_test.moc"
