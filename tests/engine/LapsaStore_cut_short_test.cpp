// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DuplicateRemoval.h"
#include "JSONEncoder.h"
#include "Privileges.h"
#include "StoreSetup.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

using namespace lapsa;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// As a move that is not known to be finished leaves it.
void mark(const QString& path)
{
    struct stat status = {};
    QCOMPARE(::lstat(path.toUtf8().constData(), &status), 0);
    const QByteArray inode = QByteArray::number(qulonglong{status.st_ino});
    QCOMPARE(
        ::setxattr(path.toUtf8().constData(), "user.lapsa.moving", inode.constData(), std::size_t(inode.size()), 0), 0);
}

void giveTimeOf(const QString& other, const QString& path)
{
    struct stat status = {};
    QCOMPARE(::lstat(other.toUtf8().constData(), &status), 0);
    const timespec times[] = {status.st_atim, status.st_mtim};
    QCOMPARE(::utimensat(AT_FDCWD, path.toUtf8().constData(), times, 0), 0);
}

/// A home and a second disk in its folder "volume".
struct TwoDiskWorld
{
    TwoDiskWorld() { mounts.mountTemporary(world.home.path(u"volume"_s)); }

    test::StoreWorld world;
    test::PrivateMounts mounts;
};

} // namespace

/// What a start finds after the end of the process cut moves short.
class LapsaStore_cut_short_test final : public QObject
{
    Q_OBJECT

private slots:

    void aFileThatWentBeforeItsRecordWasSavedGetsOne()
    {
        test::StoreWorld world;
        const QString path = world.home.makeFile(u"report.pdf"_s, "bytes");
        world.add(path, 1);
        world.letSavesPass();
        world.time.advance(1min);
        world.store().deleteExpiredItems();
        QVERIFY(!QFile::exists(path));
        QVERIFY(!world.home.dataFile(u"recovery.json"_s).contains("report.pdf"));

        world.stop();
        world.start();
        world.letSavesPass();

        QCOMPARE(world.store().recoveryItems().size(), 1);
        QCOMPARE(world.store().recoveryItems().constFirst().originalPath, path);
        QVERIFY(world.home.dataFile(u"recovery.json"_s).contains("report.pdf"));
    }

    void aCopyWithoutARecordIsNotTakenForThatOfAFileThatStands()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"report.pdf"_s, "bytes"), 1);
        world.letSavesPass();
        world.stop();
        const QString stranger = world.home.makeFile(test::recoveryFolder + u"/report.pdf"_s, "bytes");

        world.start();

        QCOMPARE(world.store().recoveryItems().size(), 0);
        QVERIFY(QFile::exists(stranger));
        QVERIFY(QFile::exists(world.home.path(u"report.pdf"_s)));
    }

    void anOriginalThatAPowerCutBroughtBackStaysAndItsCopyGoes()
    {
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        TwoDiskWorld disks;
        const LapsaRecoveryItem record = test::park(disks.world, u"volume/report.pdf"_s);
        disks.world.stop();
        const QString original = disks.world.home.makeFile(u"volume/report.pdf"_s, "bytes");
        giveTimeOf(record.recoveryPath, original);
        mark(record.recoveryPath);

        disks.world.start();
        disks.world.letSavesPass();

        QVERIFY(!QFile::exists(record.recoveryPath));
        QVERIFY(QFile::exists(original));
        QCOMPARE(disks.world.store().recoveryItems().size(), 0);
    }

    void aFileThatIsBackKeepsNoMark()
    {
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        TwoDiskWorld disks;
        const LapsaRecoveryItem record = test::park(disks.world, u"volume/report.pdf"_s);
        disks.world.store().restoreRecoveryItem(record);
        disks.world.stop();
        QVERIFY(!fileSystem::isUnfinished(record.originalPath));
        mark(record.originalPath);
        disks.world.home.writeDataFile(u"restoring.json"_s,
                                       JSONEncoder::lapsa().encode(QList<LapsaRecoveryItem>{record}));

        disks.world.start();

        QVERIFY(QFile::exists(record.originalPath));
        QVERIFY(!fileSystem::isUnfinished(record.originalPath));
    }

    void theRecordsComeBeforeTheItemsAlsoWhenTheyAreSavedAgain()
    {
        test::StoreWorld world;
        world.letSavesPass();
        const QString items = world.home.dataPath(u"state.json"_s);
        const QString records = world.home.dataPath(u"recovery.json"_s);
        QVERIFY(QFile::remove(items));
        QVERIFY(QFile::remove(records));
        world.lanes.setRuns(test::ManualLanes::Runs::WhenTheTestSaysSo);

        world.store().saveNow();
        world.store().saveRecoveryNow();
        while (!QFile::exists(items) && !QFile::exists(records) && !world.lanes.isIdle()) {
            world.lanes.runNext();
        }

        QVERIFY(QFile::exists(records));
        QVERIFY(!QFile::exists(items));
        world.lanes.runAll();
        QVERIFY(QFile::exists(items));
    }
};

QTEST_GUILESS_MAIN(LapsaStore_cut_short_test)
#include "LapsaStore_cut_short_test.moc"
