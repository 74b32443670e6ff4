// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "Privileges.h"
#include "StoreWorld.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// Whether something is made or removed in a folder.
bool changes(const QString& folder, const std::function<void()>& meanwhile)
{
    const QByteArray path = folder.toUtf8();
    const timespec longAgo[] = {{.tv_sec = 1, .tv_nsec = 0}, {.tv_sec = 1, .tv_nsec = 0}};
    ::utimensat(AT_FDCWD, path.constData(), longAgo, 0);
    meanwhile();
    struct stat status = {};
    return ::stat(path.constData(), &status) == 0 && status.st_mtim.tv_sec != 1;
}

} // namespace

/// A file on another file system than Recovery, that somebody writes when its time runs out.
class LapsaStore_in_use_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        if (!test::PrivateMounts::available()) {
            QSKIP("a second file system is mounted for these tests, which needs root");
        }
    }

    void itStaysOnTheListUntilNobodyWrites()
    {
        test::StoreWorld world;
        test::PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"disk"_s));
        const LapsaItem item = world.add(world.home.makeFile(u"disk/a.txt"_s), 1);
        QFile writer(item.path);
        QVERIFY(writer.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered));
        const test::LogCapture log;

        world.time.advance(2min);
        world.store().deleteExpiredItems();
        world.store().deleteExpiredItems();

        QVERIFY(item.exists());
        QVERIFY(world.store().isInUse(item.id));
        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});
        QCOMPARE(log.lines(), QStringList());

        QCOMPARE(writer.write("the end"), 7);
        writer.close();
        world.store().deleteExpiredItems();

        QVERIFY(!item.exists());
        QVERIFY(!world.store().isInUse(item.id));
        QVERIFY(world.listedNames().isEmpty());
        QFile parked(world.store().recoveryItems().first().recoveryPath);
        QVERIFY(parked.open(QIODevice::ReadOnly));
        QVERIFY(parked.readAll().endsWith("the end"));
    }

    void deletedByHandItIsDueAndWaits()
    {
        test::StoreWorld world;
        test::PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"disk"_s));
        const LapsaItem item = world.add(world.home.makeFile(u"disk/a.txt"_s), 1000);
        world.store().lockItem(item.id);
        QFile writer(item.path);
        QVERIFY(writer.open(QIODevice::WriteOnly | QIODevice::Append));

        QCOMPARE(world.deleted(item), LapsaStore::DeleteOutcome::InUse);
        QVERIFY(item.exists());
        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});

        writer.close();
        world.store().deleteExpiredItems();
        QVERIFY(!item.exists());
        QVERIFY(world.listedNames().isEmpty());
    }

    void aCopyInVainIsNotMadeInEachPass()
    {
        test::StoreWorld world;
        test::PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"disk"_s));
        QFile writer(world.home.makeFile(u"disk/folder/log"_s));
        const LapsaItem item = world.add(world.home.path(u"disk/folder"_s), 1);
        QVERIFY(writer.open(QIODevice::WriteOnly | QIODevice::Append));
        world.time.advance(1min);

        QList<int> copied;
        for (int minute = 0; minute < 200; ++minute) {
            const bool tried = changes(world.home.dataPath(u"Recovery"_s), [&] { world.store().deleteExpiredItems(); });
            copied += tried ? QList{minute} : QList<int>();
            QVERIFY(world.store().isInUse(item.id));
            world.time.advance(1min);
        }
        QCOMPARE(copied, (QList{0, 1, 2, 4, 8, 16, 32, 64, 124, 184}));

        writer.close();
        world.store().deleteExpiredItems();
        QVERIFY(item.exists());
        world.time.advance(1h);
        world.store().deleteExpiredItems();
        QVERIFY(!item.exists());
    }

    void aRestEndsWhereTheUserSaysSo_data()
    {
        QTest::addColumn<bool>("byHand");
        QTest::newRow("deleted by hand") << true;
        QTest::newRow("with a new time") << false;
    }

    void aRestEndsWhereTheUserSaysSo()
    {
        QFETCH(bool, byHand);
        test::StoreWorld world;
        test::PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"disk"_s));
        QFile writer(world.home.makeFile(u"disk/folder/log"_s));
        const LapsaItem item = world.add(world.home.path(u"disk/folder"_s), 1);
        QVERIFY(writer.open(QIODevice::WriteOnly | QIODevice::Append));
        for (int minute = 0; minute < 70; ++minute) {
            world.time.advance(1min);
            world.store().deleteExpiredItems();
        }
        writer.close();

        if (byHand) {
            QCOMPARE(world.deleted(item), LapsaStore::DeleteOutcome::OffTheList);
        } else {
            world.store().updateExpiration(item, 1);
            world.time.advance(1min);
            world.store().deleteExpiredItems();
        }

        QVERIFY(!item.exists());
    }

    void aLargeFileThatIsRefusedWithoutACopyIsTriedInEachPass()
    {
        test::StoreWorld world;
        test::PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"disk"_s));
        const LapsaItem item = world.add(world.home.makeFile(u"disk/film"_s, QByteArray(4 << 20, 'f')), 1);
        QFile writer(item.path);
        QVERIFY(writer.open(QIODevice::WriteOnly | QIODevice::Append));
        for (int minute = 0; minute < 70; ++minute) {
            world.time.advance(1min);
            world.store().deleteExpiredItems();
        }

        writer.close();
        world.store().deleteExpiredItems();

        QVERIFY(!item.exists());
    }
};

QTEST_GUILESS_MAIN(LapsaStore_in_use_test)
#include "LapsaStore_in_use_test.moc"
