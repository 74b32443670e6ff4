// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "ReadOnlyWorld.h"
#include "StoreWorld.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString recoveryFolder = u".local/share/Lapsa/Recovery"_s;
const QString trashedFiles = u".local/share/Trash/files"_s;

void setDisposal(test::StoreWorld& world, bool useRecoveryWindow, bool useTrash)
{
    world.changeSettings([=](LapsaSettings& settings) {
        settings.useRecoveryWindow = useRecoveryWindow;
        settings.useTrash = useTrash;
    });
}

/// Lets the item's time run out, and sweeps.
void expire(test::StoreWorld& world)
{
    world.time.advance(24h);
    world.store().deleteExpiredItems();
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeItem(const test::StoreWorld& world, const QByteArray& path, const QByteArray& displayName)
{
    world.home.writeDataFile(u"state.json"_s,
                             R"([{"addedAt":"2020-01-01T00:00:00Z","expiresAt":"2020-01-01T00:00:00Z","id":"1",
                                  "fiveMinuteWarningSent":false,"locked":false,"displayName":")" +
                                 displayName + R"(","path":")" + path + R"("}])");
    world.home.writeDataFile(u"recovery.json"_s, "[]");
}

QString failure(const QString& path, int code)
{
    return u"Lapsa failed to delete "_s + path + u": "_s + FileError::fromErrno(code).description;
}

} // namespace

class LapsaStore_expiry_test final : public QObject
{
    Q_OBJECT

private slots:

    void anExpiredFileGoesToRecoveryWithItsRecord()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s, "bytes"), 1);
        world.time.advance(1min); // the very instant
        world.store().deleteExpiredItems();

        QVERIFY(!item.exists());
        QCOMPARE(world.store().recoveryItems().size(), 1);
        const LapsaRecoveryItem record = world.store().recoveryItems().first();
        QCOMPARE(record.originalPath, item.path);
        QCOMPARE(record.recoveryPath, world.home.path(recoveryFolder + u"/a.txt"_s));
        QCOMPARE(record.displayName, u"a.txt"_s);
        QCOMPARE(record.deletedAt, world.time.now());
        QCOMPARE(record.purgeAfter, record.deletedAt + 24h);
        QCOMPARE(content(record.recoveryPath), QByteArray("bytes"));
    }

    void bothListsAreSavedAfterASweep()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        expire(world);

        world.time.advance(299ms);
        QVERIFY(!world.home.dataFile(u"recovery.json"_s).contains("a.txt"));
        world.time.advance(51ms);

        QCOMPARE(world.home.dataFile(u"state.json"_s), QByteArray("[]\n"));
        QVERIFY(world.home.dataFile(u"recovery.json"_s).contains("a.txt"));
    }

    void equalNamesGetNumbersInRecovery()
    {
        test::StoreWorld world;
        for (const QString& path :
             {u"1/a.txt"_s, u"2/a.txt"_s, u"3/a.txt"_s, u"1/Notes"_s, u"2/Notes"_s, u"1/.profile"_s, u"2/.profile"_s}) {
            world.add(world.home.makeFile(path, path.toUtf8()), 1);
        }

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder), QStringList({u".profile"_s, u".profile-1"_s, u"Notes"_s,
                                                                u"Notes-1"_s, u"a-1.txt"_s, u"a-2.txt"_s, u"a.txt"_s}));
        QCOMPARE(content(world.home.path(recoveryFolder + u"/a-1.txt"_s)), QByteArray("2/a.txt"));
        QCOMPARE(world.store().recoveryItems().at(1).recoveryPath, world.home.path(recoveryFolder + u"/a-1.txt"_s));
    }

    void theRetentionIsAtLeastAnHour()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        LapsaSettings settings = world.store().settings();
        settings.recoveryRetentionHours = 0;
        world.settingsStore().setSettings(settings); // past the store, which would clamp

        expire(world);

        const LapsaRecoveryItem record = world.store().recoveryItems().first();
        QCOMPARE(record.purgeAfter, record.deletedAt + 1h);
    }

    void withoutTheRecoveryWindowTheFileGoesToTheTrash()
    {
        test::StoreWorld world;
        setDisposal(world, false, true);
        world.add(world.home.makeFile(u"a.txt"_s, "bytes"), 1);

        expire(world);

        QCOMPARE(world.home.names(trashedFiles), QStringList{u"a.txt"_s});
        QCOMPARE(content(world.home.path(trashedFiles + u"/a.txt"_s)), QByteArray("bytes"));
        QCOMPARE(world.home.names(u".local/share/Trash/info"_s), QStringList{u"a.txt.trashinfo"_s});
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(world.store().items().isEmpty());
    }

    void withoutTrashTheFileIsGoneForGood()
    {
        test::StoreWorld world;
        setDisposal(world, false, false);
        world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.home.makeFile(u"folder/deep/b.txt"_s);
        world.add(world.home.path(u"folder"_s), 1);

        expire(world);

        QCOMPARE(world.home.names({}), QStringList{u".local"_s});
        QCOMPARE(world.home.names(u".local/share"_s), QStringList{u"Lapsa"_s});
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void theRecoveryWindowComesBeforeTheTrash_data()
    {
        QTest::addColumn<bool>("useTrash");

        QTest::newRow("with the Trash on") << true;
        QTest::newRow("with the Trash off") << false;
    }

    void theRecoveryWindowComesBeforeTheTrash()
    {
        QFETCH(bool, useTrash);
        test::StoreWorld world;
        setDisposal(world, true, useTrash);
        world.add(world.home.makeFile(u"a.txt"_s), 1);

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder), QStringList{u"a.txt"_s});
        QCOMPARE(world.home.names(trashedFiles), QStringList());
    }

    void aFolderGoesToRecoveryWhole()
    {
        test::StoreWorld world;
        world.home.makeFile(u"photos/2026/a.jpg"_s, "picture");
        world.add(world.home.path(u"photos"_s), 1);

        expire(world);

        QCOMPARE(content(world.home.path(recoveryFolder + u"/photos/2026/a.jpg"_s)), QByteArray("picture"));
    }

    void aLinkItselfIsDisposedOfAndNotWhatItLeadsTo_data()
    {
        QTest::addColumn<bool>("useRecoveryWindow");
        QTest::addColumn<bool>("useTrash");

        QTest::newRow("into Recovery") << true << true;
        QTest::newRow("into the Trash") << false << true;
        QTest::newRow("for good") << false << false;
    }

    void aLinkItselfIsDisposedOfAndNotWhatItLeadsTo()
    {
        QFETCH(bool, useRecoveryWindow);
        QFETCH(bool, useTrash);
        test::StoreWorld world;
        setDisposal(world, useRecoveryWindow, useTrash);
        const QString file = world.home.makeFile(u"kept/file.txt"_s);
        const QString toFile = world.home.path(u"to file"_s);
        const QString toFolder = world.home.path(u"to folder"_s);
        QVERIFY(QFile::link(file, toFile));
        QVERIFY(QFile::link(world.home.path(u"kept"_s), toFolder));
        world.add(toFile, 1);
        world.add(toFolder, 1);

        expire(world);

        QVERIFY(!QFileInfo(toFile).isSymLink());
        QVERIFY(!QFileInfo(toFolder).isSymLink());
        QCOMPARE(world.home.names(u"kept"_s), QStringList{u"file.txt"_s});
    }

    void aLockedItemStaysHoweverLongItsTimeIsOver()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.store().toggleLock(item);

        expire(world);

        QVERIFY(item.exists());
        QCOMPARE(world.store().items().size(), 1);
    }

    void whatIsNotDueStaysInItsOrder()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"c"_s), 60 * 48);
        world.add(world.home.makeFile(u"due"_s), 1);
        world.add(world.home.makeFile(u"b"_s), 60 * 48);

        expire(world);

        QCOMPARE(world.listedNames(), QStringList({u"c"_s, u"b"_s}));
        QVERIFY(QFile::exists(world.home.path(u"b"_s)));
    }

    void aFileThatIsGoneIsDroppedWithoutAWord()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        QVERIFY(QFile::remove(item.path));
        const test::LogCapture log;

        expire(world);

        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(log.lines(), QStringList());
    }

    void aSweepWithNothingDueSavesNothing()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"a.txt"_s), 10);
        world.letSavesPass();
        QFile::remove(world.home.dataPath(u"state.json"_s));
        QFile::remove(world.home.dataPath(u"recovery.json"_s));

        world.store().deleteExpiredItems();
        world.letSavesPass();

        QVERIFY(world.home.dataFile(u"state.json"_s).isNull());
        QVERIFY(world.home.dataFile(u"recovery.json"_s).isNull());
    }

    void aSweepWhilePausedPurgesAndThenStops()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"parked.txt"_s), 1);
        expire(world);
        const LapsaItem due = world.add(world.home.makeFile(u"due.txt"_s), 1);
        world.changeSettings([](LapsaSettings& settings) { settings.pauseAllCountdowns = true; });

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder), QStringList());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(due.exists());
        QCOMPARE(world.store().items(), QList{due});
    }

    void aFailedDisposalIsOneLineAndTheItemIsDropped_data()
    {
        QTest::addColumn<bool>("useRecoveryWindow");
        QTest::addColumn<bool>("useTrash");

        QTest::newRow("into Recovery") << true << true;
        QTest::newRow("into the Trash") << false << true;
        QTest::newRow("for good") << false << false;
    }

    void aFailedDisposalIsOneLineAndTheItemIsDropped()
    {
        if (!test::inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(bool, useRecoveryWindow);
        QFETCH(bool, useTrash);
        test::StoreWorld world(false);
        // The home folder is what nobody may dispose of, whoever runs this. No add takes it: an edited list has it.
        writeItem(world, world.home.path({}).toUtf8(), "home");
        world.start();
        setDisposal(world, useRecoveryWindow, useTrash);
        const LapsaItem item = world.store().items().first();
        const LapsaItem next = world.add(world.home.makeFile(u"next.txt"_s), 1);
        const test::LogCapture log;

        expire(world);

        QCOMPARE(log.lines(), QStringList{failure(item.path, EPERM)});
        QVERIFY(item.exists());
        QVERIFY(!next.exists());
        QVERIFY(world.store().items().isEmpty());
        QCOMPARE(world.store().recoveryItems().size(), useRecoveryWindow ? 1 : 0);
    }

    void aRecoveryFolderThatCannotBeMadeIsAFailureLikeAnyOther()
    {
        test::StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        world.home.writeDataFile(u"Recovery"_s, "in the way");
        const test::LogCapture log;

        expire(world);

        QCOMPARE(log.lines(), QStringList{failure(item.path, ENOTDIR)});
        QVERIFY(item.exists());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(world.store().items().isEmpty());
    }

    void aFailureWithAnOddNameIsStillOneLine()
    {
        test::StoreWorld world(false);
        const QString folder = world.home.makeFolder(u"100% %s\nLapsa state save failed: no\x1b[31m"_s);
        qputenv("HOME", folder.toUtf8()); // which protects it
        writeItem(world, QByteArray(folder.toUtf8()).replace('\n', "\\n").replace('\x1b', "\\u001b"), "x");
        world.start();
        const test::LogCapture log;

        world.store().deleteExpiredItems();

        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().first().startsWith(u"Lapsa failed to delete "_s));
        QVERIFY(log.lines().first().contains(u"100% %s\\nLapsa state save failed: no"_s));
        QVERIFY(!log.lines().first().contains(u'\x1b'));
        QVERIFY(QFileInfo::exists(folder));
    }

    void aDisplayNameNeverLeadsOutOfTheRecoveryFolder_data()
    {
        QTest::addColumn<QByteArray>("displayName");

        for (const char* name : {"", ".", "..", "/", "../../escaped", "/tmp/escaped", "sub/escaped", "a\\u0000b"}) {
            QTest::newRow(*name == '\0' ? "empty" : name) << QByteArray(name);
        }
        QTest::newRow("longer than a name can be") << QByteArray(300, 'x');
    }

    void aDisplayNameNeverLeadsOutOfTheRecoveryFolder()
    {
        QFETCH(QByteArray, displayName);
        test::StoreWorld world(false);
        const QString path = world.home.makeFile(u"folder/a.txt"_s, "bytes");
        writeItem(world, path.toUtf8(), displayName);
        world.start();
        const test::LogCapture log;

        world.store().deleteExpiredItems();

        QCOMPARE(log.lines(), QStringList());
        const QStringList names = world.home.names(recoveryFolder);
        QCOMPARE(names.size(), 1);
        QCOMPARE(content(world.home.path(recoveryFolder + u'/' + names.first())), QByteArray("bytes"));
        QCOMPARE(world.home.names({}), QStringList({u".local"_s, u"folder"_s}));
    }

    void aPathThatMustNotBeTouchedIsAFailure_data()
    {
        QTest::addColumn<QString>("path");

        QTest::newRow("the root") << u"/"_s;
        QTest::newRow("the home folder") << u"%home%"_s;
        QTest::newRow("what is above the home folder") << u"%home%/.."_s;
        QTest::newRow("the home folder by a detour") << u"%home%/.local/.."_s;
        QTest::newRow("the data folder") << u"%home%/.local/share/Lapsa"_s;
        QTest::newRow("the data folder with a slash") << u"%home%/.local/share/Lapsa/"_s;
        QTest::newRow("what is above the data folder") << u"%home%/.local/share"_s;
        QTest::newRow("a mount point") << u"/proc"_s;
        QTest::newRow("a relative path") << u"."_s;
        QTest::newRow("a relative path to nowhere") << u"missing/a.txt"_s;
        QTest::newRow("no path at all") << QString();
    }

    void aPathThatMustNotBeTouchedIsAFailure()
    {
        if (!test::inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(QString, path);
        for (const bool useRecoveryWindow : {true, false}) {
            for (const bool useTrash : {true, false}) {
                test::StoreWorld world(false);
                world.home.makeFile(u"kept.txt"_s);
                const QString given = QString(path).replace(u"%home%"_s, world.home.path({}));
                writeItem(world, given.toUtf8(), "x");
                world.start();
                setDisposal(world, useRecoveryWindow, useTrash);
                const test::LogCapture log;

                world.store().deleteExpiredItems();

                QCOMPARE(log.lines().size(), 1);
                QVERIFY2(log.lines().first().startsWith(u"Lapsa failed to delete "_s + given + u": "_s),
                         qPrintable(log.lines().first()));
                QVERIFY(world.store().items().isEmpty());
                QVERIFY(world.store().recoveryItems().isEmpty());
                QCOMPARE(world.home.names({}), QStringList({u".local"_s, u"kept.txt"_s}));
                QVERIFY(QFileInfo::exists(world.home.dataPath(u"settings.json"_s)));
            }
        }
    }

    void aThousandEqualNamesAllArrive()
    {
        test::StoreWorld world;
        constexpr int count = 1000;
        QList<QUrl> urls;
        for (int number = 0; number < count; ++number) {
            urls += QUrl::fromLocalFile(
                world.home.makeFile(QString::number(number) + u"/report.pdf"_s, QByteArray::number(number)));
        }
        world.store().addFiles(urls, {.fixedLifespan = 1});

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder).size(), count);
        QCOMPARE(world.store().recoveryItems().size(), count);
        for (int number = 0; number < count; ++number) {
            QCOMPARE(content(world.store().recoveryItems().at(number).recoveryPath), QByteArray::number(number));
        }
    }

    void anItemThatExpiresWhileOthersAreOnTheirWayIsLeftToTheNextPass()
    {
        test::StoreWorld world;
        const LapsaItem first = world.add(world.home.makeFile(u"first.txt"_s), 1);
        const LapsaItem late = world.add(world.home.makeFile(u"late.txt"_s), 2);
        world.time.advance(1min);
        // Disposing of the first takes so long that the second is due before the list is cleared.
        connect(&world.store(), &LapsaStore::willChange, this, [&] {
            if (!world.store().recoveryItems().isEmpty()) {
                world.time.setClock(late.expiresAt);
            }
        });

        world.store().deleteExpiredItems();

        QVERIFY(!first.exists());
        QVERIFY(late.exists());
        QCOMPARE(world.store().recoveryItems().size(), 1);
        QCOMPARE(world.store().items(), QList{late});

        world.store().deleteExpiredItems();

        QVERIFY(!late.exists());
        QVERIFY(world.store().items().isEmpty());
    }
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_expiry_test)

#include "LapsaStore_expiry_test.moc"
