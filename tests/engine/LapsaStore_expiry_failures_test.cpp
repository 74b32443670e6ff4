// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "LogCapture.h"
#include "ReadOnlyWorld.h"
#include "StoreSetup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <cerrno>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

namespace {

void writeItem(const StoreWorld& world, const QByteArray& path, const QByteArray& displayName)
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

class LapsaStore_expiry_failures_test final : public QObject
{
    Q_OBJECT

private slots:

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
        if (!inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(bool, useRecoveryWindow);
        QFETCH(bool, useTrash);
        StoreWorld world(false);
        // The home folder is what nobody may dispose of, whoever runs this. No add takes it: an edited list has it.
        writeItem(world, world.home.path({}).toUtf8(), "home");
        world.start();
        setDisposal(world, useRecoveryWindow, useTrash);
        const LapsaItem item = world.store().items().first();
        const LapsaItem next = world.add(world.home.makeFile(u"next.txt"_s), 1);
        const LogCapture log;

        expire(world);

        QCOMPARE(log.lines(), QStringList{failure(item.path, EPERM)});
        QVERIFY(item.exists());
        QVERIFY(!next.exists());
        QVERIFY(world.store().items().isEmpty());
        QCOMPARE(world.store().recoveryItems().size(), useRecoveryWindow ? 1 : 0);
    }

    void aRecoveryFolderThatCannotBeMadeIsAFailureLikeAnyOther()
    {
        StoreWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 1);
        QVERIFY(QDir().rmdir(world.home.path(recoveryFolder)));
        world.home.writeDataFile(u"Recovery"_s, "in the way");
        const LogCapture log;

        expire(world);

        QCOMPARE(log.lines(), QStringList{failure(item.path, ENOTDIR)});
        QVERIFY(item.exists());
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(world.store().items().isEmpty());
    }

    void aFailureWithAnOddNameIsStillOneLine()
    {
        StoreWorld world(false);
        const QString folder = world.home.makeFolder(u"100% %s\nLapsa state save failed: no\x1b[31m"_s);
        qputenv("HOME", folder.toUtf8()); // which protects it
        writeItem(world, QByteArray(folder.toUtf8()).replace('\n', "\\n").replace('\x1b', "\\u001b"), "x");
        world.start();
        const LogCapture log;

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
        StoreWorld world(false);
        const QString path = world.home.makeFile(u"folder/a.txt"_s, "bytes");
        writeItem(world, path.toUtf8(), displayName);
        world.start();
        const LogCapture log;

        world.store().deleteExpiredItems();

        QCOMPARE(log.lines(), QStringList());
        const QStringList names = world.home.names(recoveryFolder);
        QCOMPARE(names.size(), 1);
        QCOMPARE(contentOf(world.home.path(recoveryFolder + u'/' + names.first())), QByteArray("bytes"));
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
        if (!inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(QString, path);
        for (const bool useRecoveryWindow : {true, false}) {
            for (const bool useTrash : {true, false}) {
                StoreWorld world(false);
                world.home.makeFile(u"kept.txt"_s);
                const QString given = QString(path).replace(u"%home%"_s, world.home.path({}));
                writeItem(world, given.toUtf8(), "x");
                world.start();
                setDisposal(world, useRecoveryWindow, useTrash);
                const LogCapture log;

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
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_expiry_failures_test)

#include "LapsaStore_expiry_failures_test.moc"
