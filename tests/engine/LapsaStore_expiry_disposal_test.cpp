// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "ReadOnlyWorld.h"
#include "StoreSetup.h"

#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString trashedFiles = u".local/share/Trash/files"_s;

} // namespace

class LapsaStore_expiry_disposal_test final : public QObject
{
    Q_OBJECT

private slots:

    void anExpiredFileGoesToRecoveryWithItsRecord()
    {
        StoreWorld world;
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
        QCOMPARE(contentOf(record.recoveryPath), QByteArray("bytes"));
    }

    void equalNamesGetNumbersInRecovery()
    {
        StoreWorld world;
        for (const QString& path :
             {u"1/a.txt"_s, u"2/a.txt"_s, u"3/a.txt"_s, u"1/Notes"_s, u"2/Notes"_s, u"1/.profile"_s, u"2/.profile"_s}) {
            world.add(world.home.makeFile(path, path.toUtf8()), 1);
        }

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder), QStringList({u".profile"_s, u".profile-1"_s, u"Notes"_s,
                                                                u"Notes-1"_s, u"a-1.txt"_s, u"a-2.txt"_s, u"a.txt"_s}));
        QCOMPARE(contentOf(world.home.path(recoveryFolder + u"/a-1.txt"_s)), QByteArray("2/a.txt"));
        QCOMPARE(world.store().recoveryItems().at(1).recoveryPath, world.home.path(recoveryFolder + u"/a-1.txt"_s));
    }

    void theRetentionIsAtLeastAnHour()
    {
        StoreWorld world;
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
        StoreWorld world;
        setDisposal(world, false, true);
        world.add(world.home.makeFile(u"a.txt"_s, "bytes"), 1);

        expire(world);

        QCOMPARE(world.home.names(trashedFiles), QStringList{u"a.txt"_s});
        QCOMPARE(contentOf(world.home.path(trashedFiles + u"/a.txt"_s)), QByteArray("bytes"));
        QCOMPARE(world.home.names(u".local/share/Trash/info"_s), QStringList{u"a.txt.trashinfo"_s});
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(world.store().items().isEmpty());
    }

    void withoutTrashTheFileIsGoneForGood()
    {
        StoreWorld world;
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
        StoreWorld world;
        setDisposal(world, true, useTrash);
        world.add(world.home.makeFile(u"a.txt"_s), 1);

        expire(world);

        QCOMPARE(world.home.names(recoveryFolder), QStringList{u"a.txt"_s});
        QCOMPARE(world.home.names(trashedFiles), QStringList());
    }

    void aFolderGoesToRecoveryWhole()
    {
        StoreWorld world;
        world.home.makeFile(u"photos/2026/a.jpg"_s, "picture");
        world.add(world.home.path(u"photos"_s), 1);

        expire(world);

        QCOMPARE(contentOf(world.home.path(recoveryFolder + u"/photos/2026/a.jpg"_s)), QByteArray("picture"));
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
        StoreWorld world;
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

    void aThousandEqualNamesAllArrive()
    {
        StoreWorld world;
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
            QCOMPARE(contentOf(world.store().recoveryItems().at(number).recoveryPath), QByteArray::number(number));
        }
    }
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_expiry_disposal_test)

#include "LapsaStore_expiry_disposal_test.moc"
