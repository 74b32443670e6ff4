// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "Privileges.h"
#include "StoreWorld.h"

#include <QFile>
#include <QTest>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

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

        QCOMPARE(world.store().deleteNow(item), LapsaStore::DeleteOutcome::InUse);
        QVERIFY(item.exists());
        QCOMPARE(world.listedNames(), QStringList{u"a.txt"_s});

        writer.close();
        world.store().deleteExpiredItems();
        QVERIFY(!item.exists());
        QVERIFY(world.listedNames().isEmpty());
    }
};

QTEST_GUILESS_MAIN(LapsaStore_in_use_test)
#include "LapsaStore_in_use_test.moc"
