// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "Privileges.h"
#include "StoreWorld.h"

#include <QTest>

#include <functional>
#include <tuple>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

/// Has a look at the list on the disk just before the record with that number (from 0) is made, when its file has been
/// moved; `before` is done at each record before that.
QByteArray listOnDiskAtRecord(test::StoreWorld& world, qsizetype number, const std::function<void()>& before)
{
    QByteArray seen;
    const auto connection = QObject::connect(&world.store(), &LapsaStore::willChange, &world.store(), [&] {
        const qsizetype records = world.store().recoveryItems().size();
        if (records < number) {
            before();
        } else if (records == number && seen.isNull()) {
            seen = world.home.dataFile(u"recovery.json"_s);
        }
    });
    world.store().deleteExpiredItems();
    QObject::disconnect(connection);
    return seen;
}

} // namespace

/// When records reach the disk while a pass is under way.
class LapsaStore_records_test final : public QObject
{
    Q_OBJECT

private slots:

    void aRecordIsOnTheDiskAfterAThirdOfASecondOfAPass_data()
    {
        QTest::addColumn<int>("millisecondsEach");
        QTest::addColumn<bool>("onDisk");

        QTest::newRow("a quick pass") << 100 << false;
        QTest::newRow("a slow pass") << 150 << true;
        QTest::newRow("a very slow pass") << 60'000 << true;
    }

    void aRecordIsOnTheDiskAfterAThirdOfASecondOfAPass()
    {
        QFETCH(int, millisecondsEach);
        QFETCH(bool, onDisk);
        test::StoreWorld world;
        for (const QString& name : {u"a"_s, u"b"_s, u"c"_s, u"d"_s}) {
            world.add(world.home.makeFile(name), 1);
        }
        world.time.advance(1min);

        // After a and after b.
        const QByteArray seen = listOnDiskAtRecord(world, 3, [&] {
            if (!world.store().recoveryItems().isEmpty()) {
                world.time.setClock(world.time.now() + std::chrono::milliseconds(millisecondsEach));
            }
        });

        QVERIFY(!seen.isNull());
        QCOMPARE(seen.contains("\"displayName\" : \"a\""), onDisk);
        QCOMPARE(world.store().recoveryItems().size(), 4);
    }

    void recordsAreSavedBeforeSomethingLongBegins_data()
    {
        QTest::addColumn<QString>("next");
        QTest::addColumn<qsizetype>("size");
        QTest::addColumn<bool>("onDisk");

        QTest::newRow("a big file on another volume") << u"volume/big"_s << qsizetype{2 << 20} << true;
        QTest::newRow("a small file on another volume") << u"volume/small"_s << qsizetype{100} << false;
        QTest::newRow("a folder on another volume") << u"volume/folder/sub/small"_s << qsizetype{100} << true;
        QTest::newRow("a big file here") << u"big"_s << qsizetype{2 << 20} << false;
    }

    void recordsAreSavedBeforeSomethingLongBegins()
    {
        QFETCH(QString, next);
        QFETCH(qsizetype, size);
        QFETCH(bool, onDisk);
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        test::StoreWorld world;
        test::PrivateMounts mounts;
        mounts.mountTemporary(world.home.path(u"volume"_s));
        world.add(world.home.makeFile(u"a"_s), 1);
        world.home.makeFile(next, QByteArray(size, 'x'));
        world.add(world.home.path(next.section(u'/', 0, 1)), 1);
        world.time.advance(1min);

        const QByteArray seen = listOnDiskAtRecord(world, 1, [] {});

        QVERIFY(!seen.isNull());
        QCOMPARE(seen.contains("\"displayName\" : \"a\""), onDisk);
        QCOMPARE(world.store().recoveryItems().size(), 2);
    }

    void whatTheSystemItselfRefusesIsOneLineAndTheItemIsDropped_data()
    {
        QTest::addColumn<bool>("useRecoveryWindow");
        QTest::addColumn<bool>("useTrash");

        QTest::newRow("into Recovery") << true << true;
        QTest::newRow("into the Trash") << false << true;
        QTest::newRow("for good") << false << false;
    }

    void whatTheSystemItselfRefusesIsOneLineAndTheItemIsDropped()
    {
        QFETCH(bool, useRecoveryWindow);
        QFETCH(bool, useTrash);
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        test::StoreWorld world;
        world.changeSettings([=](LapsaSettings& settings) {
            settings.useRecoveryWindow = useRecoveryWindow;
            settings.useTrash = useTrash;
        });
        test::PrivateMounts mounts;
        const QString volume = world.home.path(u"volume"_s);
        mounts.mountTemporary(volume);
        const LapsaItem item = world.add(world.home.makeFile(u"volume/folder/a"_s), 1);
        mounts.makeReadOnly(volume);
        world.time.advance(1min);
        const test::LogCapture log;

        world.store().deleteExpiredItems();

        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().first().startsWith(u"Lapsa failed to delete "_s + item.path + u": "_s));
        QVERIFY(item.exists());
        QVERIFY(world.store().items().isEmpty());
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aRecordOfADeletionByHandIsSavedBeforeALongPurge()
    {
        test::StoreWorld world;
        world.home.makeFile(u"folder/a"_s);
        world.store().deleteNow(world.add(world.home.path(u"folder"_s)));
        world.time.advance(24h);
        world.store().deleteNow(world.add(world.home.makeFile(u"b"_s)));
        QByteArray seen;
        connect(&world.store(), &LapsaStore::willChange, this,
                [&] { seen = seen.isNull() ? world.home.dataFile(u"recovery.json"_s) : seen; });

        world.store().purgeExpiredRecovery();

        QVERIFY(seen.contains("\"displayName\" : \"b\""));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_records_test)

#include "LapsaStore_records_test.moc"
