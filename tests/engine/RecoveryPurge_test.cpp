// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CaselessDisk.h"
#include "JSONEncoder.h"
#include "LogCapture.h"
#include "Privileges.h"
#include "StoreWorld.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <unistd.h>

#include <cerrno>
#include <tuple>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString recoveryFolder = u".local/share/Lapsa/Recovery"_s;

LapsaRecoveryItem record(const QString& recoveryPath, TimePoint purgeAfter, const QString& originalPath = u"/a"_s)
{
    return {.id = QUuid::createUuid(),
            .originalPath = originalPath,
            .recoveryPath = recoveryPath,
            .displayName = u"x"_s,
            .deletedAt = distantPast,
            .purgeAfter = purgeAfter};
}

LapsaItem itemAt(const QString& path, TimePoint expiresAt, bool locked)
{
    return {.id = newItemId(),
            .path = path,
            .displayName = u"x"_s,
            .addedAt = distantPast,
            .expiresAt = expiresAt,
            .locked = locked};
}

void startWith(test::StoreWorld& world, const QList<LapsaRecoveryItem>& records, const QList<LapsaItem>& items = {})
{
    world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
    world.home.writeDataFile(u"recovery.json"_s, JSONEncoder::lapsa().encode(records));
    world.start();
    world.letSavesPass();
}

QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class RecoveryPurge_test final : public QObject
{
    Q_OBJECT

private slots:

    void whatLiesElsewhereIsLeftAlone_data()
    {
        QTest::addColumn<QString>("recoveryPath");
        QTest::addColumn<QString>("victim");

        const QString own = u"%home%/"_s + recoveryFolder;
        QTest::newRow("a document") << u"%home%/Documents/a.txt"_s << u"Documents/a.txt"_s;
        QTest::newRow("by way of Recovery") << own + u"/../../../../Documents/a.txt"_s << u"Documents/a.txt"_s;
        QTest::newRow("a list") << own + u"/../notes.json"_s << u".local/share/Lapsa/notes.json"_s;
        QTest::newRow("inside a parked folder") << own + u"/folder/a.txt"_s << recoveryFolder + u"/folder/a.txt"_s;
        QTest::newRow("through a link in Recovery") << own + u"/link/a.txt"_s << u"Documents/a.txt"_s;
        QTest::newRow("another data folder") << u"%home%/old/Lapsa/Recovery/a.txt"_s << u"old/Lapsa/Recovery/a.txt"_s;
        QTest::newRow("another folder called Recovery") << u"%home%/Recovery/a.txt"_s << u"Recovery/a.txt"_s;
        QTest::newRow("Recovery itself") << own << recoveryFolder + u"/b.txt"_s;
        QTest::newRow("Recovery itself, with a slash") << own + u'/' << recoveryFolder + u"/b.txt"_s;
        QTest::newRow("Recovery itself, by a dot") << own + u"/."_s << recoveryFolder + u"/b.txt"_s;
        QTest::newRow("what is above Recovery") << own + u"/.."_s << recoveryFolder + u"/b.txt"_s;
        QTest::newRow("no path") << QString() << recoveryFolder + u"/b.txt"_s;
        QTest::newRow("a bare name") << u"b.txt"_s << recoveryFolder + u"/b.txt"_s;
    }

    void whatLiesElsewhereIsLeftAlone()
    {
        QFETCH(QString, recoveryPath);
        QFETCH(QString, victim);
        test::StoreWorld world(false);
        world.home.makeFolder(u"Documents"_s);
        world.home.makeFile(recoveryFolder + u"/b.txt"_s, "bytes");
        QVERIFY(QFile::link(world.home.path(u"Documents"_s), world.home.path(recoveryFolder + u"/link"_s)));
        world.home.makeFile(victim, "bytes");
        recoveryPath.replace(u"%home%"_s, world.home.path({}));
        const QString restored = world.home.path(u"restored.txt"_s);
        const LapsaRecoveryItem due = record(recoveryPath, world.time.now(), restored);
        const LapsaRecoveryItem later = record(recoveryPath, distantFuture, restored);

        startWith(world, {due, later, later});
        QCOMPARE(world.store().recoveryItems(), QList({later, later}));
        world.store().restoreRecoveryItem(later);
        QCOMPARE(world.store().recoveryItems(), QList({later, later}));
        world.store().deleteRecoveryItem(later);

        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(content(world.home.path(victim)), QByteArray("bytes"));
        QVERIFY(!QFileInfo(restored).isSymLink() && !QFile::exists(restored));
        QVERIFY(QFile::exists(world.home.dataPath(u"state.json"_s)));
    }

    void aCopyOfADataFolderUsesItsOwnCopies()
    {
        test::StoreWorld world;
        for (const QString& name : {u"purged"_s, u"deleted"_s, u"restored"_s}) {
            std::ignore = world.store().deleteNow(world.add(world.home.makeFile(name, name.toUtf8())));
        }
        world.letSavesPass();
        const QString old = world.home.path(recoveryFolder);
        const QString copied = world.home.makeFolder(u"moved"_s);
        QCOMPARE(QProcess::execute(u"cp"_s, {u"-a"_s, world.home.dataPath(), copied}), 0);
        qputenv("XDG_DATA_HOME", copied.toUtf8());

        world.start();
        const QList<LapsaRecoveryItem> parked = world.store().recoveryItems();
        world.store().deleteRecoveryItem(parked.at(1));
        world.store().restoreRecoveryItem(parked.at(2));
        world.time.advance(24h);
        world.store().purgeExpiredRecovery();

        QCOMPARE(QDir(old).entryList(QDir::Files, QDir::Name), QStringList({u"deleted"_s, u"purged"_s, u"restored"_s}));
        QCOMPARE(QDir(copied + u"/Lapsa/Recovery"_s).entryList(QDir::Files), QStringList());
        QCOMPARE(content(world.home.path(u"restored"_s)), QByteArray("restored"));
    }

    void aDataFolderReachedByALinkIsStillItsOwn()
    {
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"by link"_s)));

        startWith(world, {record(world.home.path(u"by link/Recovery/a.txt"_s), world.time.now())});

        QVERIFY(!QFile::exists(copy));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aParkedLinkGoesAndNotWhatItLeadsTo()
    {
        test::StoreWorld world(false);
        const QString kept = world.home.makeFile(u"Documents/a.txt"_s);
        const QString link = world.home.path(recoveryFolder + u"/link"_s);
        world.home.makeFolder(recoveryFolder);
        QVERIFY(QFile::link(world.home.path(u"Documents"_s), link));

        startWith(world, {record(link, world.time.now())});

        QVERIFY(!QFileInfo(link).isSymLink());
        QVERIFY(QFile::exists(kept));
    }

    void aCopyThatIsOnTheListStaysWithItsRecord_data()
    {
        QTest::addColumn<QString>("itemPath");
        QTest::addColumn<int>("minutesLeft");
        QTest::addColumn<bool>("locked");
        QTest::addColumn<bool>("stays");

        const QString own = u"%home%/"_s + recoveryFolder;
        QTest::newRow("locked") << own + u"/folder"_s << -1 << true << true;
        QTest::newRow("with time left") << own + u"/folder"_s << 1 << false << true;
        QTest::newRow("run out") << own + u"/folder"_s << -1 << false << false;
        QTest::newRow("locked, something inside it") << own + u"/folder/sub/a.txt"_s << -1 << true << true;
        QTest::newRow("with time left, something inside it") << own + u"/folder/sub/a.txt"_s << 1 << false << true;
        QTest::newRow("run out, something inside it") << own + u"/folder/sub/a.txt"_s << -1 << false << false;
        QTest::newRow("locked, something inside it that is gone") << own + u"/folder/gone.txt"_s << -1 << true << false;
        QTest::newRow("locked, by a detour") << own + u"/../Recovery//./folder/"_s << -1 << true << true;
        QTest::newRow("locked, by a link") << u"%home%/by link/Recovery/folder"_s << -1 << true << true;
        QTest::newRow("locked, inside it by a link")
            << u"%home%/by link/Recovery/folder/sub/a.txt"_s << -1 << true << true;
        QTest::newRow("locked, by a link into it") << u"%home%/into it/a.txt"_s << -1 << true << true;
        QTest::newRow("locked, beside it") << own + u"/folder-1"_s << -1 << true << false;
    }

    void aCopyThatIsOnTheListStaysWithItsRecord()
    {
        QFETCH(QString, itemPath);
        QFETCH(int, minutesLeft);
        QFETCH(bool, locked);
        QFETCH(bool, stays);
        test::StoreWorld world(false);
        const QString copy = world.home.path(recoveryFolder + u"/folder"_s);
        world.home.makeFile(recoveryFolder + u"/folder/sub/a.txt"_s);
        world.home.makeFile(recoveryFolder + u"/folder-1/a.txt"_s);
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"by link"_s)));
        QVERIFY(QFile::link(copy + u"/sub"_s, world.home.path(u"into it"_s)));
        const LapsaRecoveryItem due = record(copy, world.time.now());

        startWith(world, {due},
                  {itemAt(itemPath.replace(u"%home%"_s, world.home.path({})),
                          world.time.now() + std::chrono::minutes(minutesLeft), locked)});

        QCOMPARE(QFile::exists(copy + u"/sub/a.txt"_s), stays);
        QCOMPARE(world.store().recoveryItems(), stays ? QList{due} : QList<LapsaRecoveryItem>());
    }

    void aCopyGoesOnceItsItemIsUnlocked()
    {
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        startWith(world, {record(copy, world.time.now())}, {itemAt(copy, distantPast, true)});
        world.home.writeDataFile(u"recovery.json"_s, "not to be written");
        world.store().purgeExpiredRecovery();
        world.letSavesPass();
        QCOMPARE(world.home.dataFile(u"recovery.json"_s), QByteArray("not to be written"));

        world.store().toggleLock(world.item(copy));
        world.store().purgeExpiredRecovery();

        QVERIFY(!QFile::exists(copy));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aCopyThatAnotherRecordKeepsStays_data()
    {
        QTest::addColumn<QString>("keptAs");

        QTest::newRow("by the same path") << u"%own%/a.txt"_s;
        QTest::newRow("by a detour") << u"%own%/../Recovery/./a.txt"_s;
        QTest::newRow("with more slashes") << u"//%own%//a.txt/"_s;
        QTest::newRow("by a link") << u"%home%/by link/Recovery/a.txt"_s;
    }

    void aCopyThatAnotherRecordKeepsStays()
    {
        QFETCH(QString, keptAs);
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"by link"_s)));
        keptAs.replace(u"%own%"_s, world.home.path(recoveryFolder)).replace(u"%home%"_s, world.home.path({}));
        const LapsaRecoveryItem later = record(keptAs, world.time.now() + 1h);

        startWith(world, {record(copy, world.time.now()), later});
        QVERIFY(QFile::exists(copy));
        QCOMPARE(world.store().recoveryItems(), QList{later});

        world.time.advance(1h);
        world.store().purgeExpiredRecovery();
        QVERIFY(!QFile::exists(copy));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aRestoreOfACopyThatAnotherRecordSharesTakesItAway()
    {
        test::StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s, "bytes");
        const QString place = world.home.path(u"a.txt"_s);
        const LapsaRecoveryItem first = record(copy, world.time.now() + 1h, place);
        const LapsaRecoveryItem second = record(copy, world.time.now() + 2h, world.home.path(u"b.txt"_s));
        startWith(world, {first, second});

        world.store().restoreRecoveryItem(first);
        world.store().restoreRecoveryItem(second); // gone: its record waits for its time
        QCOMPARE(content(place), QByteArray("bytes"));
        QVERIFY(!QFile::exists(second.originalPath));
        QCOMPARE(world.store().recoveryItems(), QList{second});

        world.time.advance(2h);
        world.store().purgeExpiredRecovery();
        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(content(place), QByteArray("bytes"));
    }

    void twoNamesOfOneFileHaveTheirOwnTimes()
    {
        test::StoreWorld world(false);
        const QString first = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        const QString second = world.home.path(recoveryFolder + u"/b.txt"_s);
        QCOMPARE(::link(first.toUtf8().constData(), second.toUtf8().constData()), 0);

        startWith(world, {record(first, world.time.now()), record(second, world.time.now() + 1h)});

        QVERIFY(!QFile::exists(first));
        QVERIFY(QFile::exists(second));
    }

    void twoFilesThatDifferInCaseAloneHaveTheirOwnTimes()
    {
        test::StoreWorld world(false);
        const QString first = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        const QString second = world.home.makeFile(recoveryFolder + u"/A.TXT"_s);

        startWith(world, {record(first, world.time.now()), record(second, world.time.now() + 1h)},
                  {itemAt(world.home.path(recoveryFolder + u"/A.txt"_s), distantFuture, true)});

        QVERIFY(!QFile::exists(first));
        QVERIFY(QFile::exists(second));
    }

    void anotherSpellingKeepsACopyToo_data()
    {
        QTest::addColumn<QString>("dueAs");
        QTest::addColumn<QString>("keptAs");
        QTest::addColumn<bool>("byItem");

        QTest::newRow("the record has another spelling") << u"Notes"_s << u"NOTES"_s << false;
        QTest::newRow("the due record has another spelling") << u"notes"_s << u"Notes"_s << false;
        QTest::newRow("the item has another spelling") << u"Notes"_s << u"noteS"_s << true;
        QTest::newRow("an item inside it has another spelling") << u"Notes"_s << u"noteS/A.TXT"_s << true;
    }

    void anotherSpellingKeepsACopyToo()
    {
        QFETCH(QString, dueAs);
        QFETCH(QString, keptAs);
        QFETCH(bool, byItem);
        if (!test::PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        test::StoreWorld world(false);
        const auto disk = test::CaselessDisk::mountedAt(world.home.path(u".local/share"_s));
        if (!disk) {
            QSKIP("The system has no exFAT");
        }
        const QString file = world.home.makeFile(recoveryFolder + u"/Notes/a.txt"_s);
        const QString other = world.home.path(recoveryFolder + u'/' + keptAs);
        const LapsaRecoveryItem due = record(world.home.path(recoveryFolder + u'/' + dueAs), world.time.now());

        startWith(world, byItem ? QList{due} : QList{due, record(other, distantFuture)},
                  byItem ? QList{itemAt(other, distantFuture, false)} : QList<LapsaItem>());

        QVERIFY(QFile::exists(file));
        QCOMPARE(world.store().recoveryItems().size(), 1);
        QCOMPARE(world.store().recoveryItems().first() == due, byItem);
    }
};

QTEST_GUILESS_MAIN(RecoveryPurge_test)

#include "RecoveryPurge_test.moc"
