// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "StoreSetup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

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
        StoreWorld world(false);
        world.home.makeFolder(u"Documents"_s);
        world.home.makeFile(recoveryFolder + u"/b.txt"_s, "bytes");
        QVERIFY(QFile::link(world.home.path(u"Documents"_s), world.home.path(recoveryFolder + u"/link"_s)));
        world.home.makeFile(victim, "bytes");
        recoveryPath.replace(u"%home%"_s, world.home.path({}));
        const QString restored = world.home.path(u"restored.txt"_s);
        const LapsaRecoveryItem due = recordAt(recoveryPath, world.time.now(), restored);
        const LapsaRecoveryItem later = recordAt(recoveryPath, distantFuture, restored);

        startWith(world, {due, later, later});
        QCOMPARE(world.store().recoveryItems(), QList({later, later}));
        world.store().restoreRecoveryItem(later);
        QCOMPARE(world.store().recoveryItems(), QList({later, later}));
        world.store().deleteRecoveryItem(later);

        QVERIFY(world.store().recoveryItems().isEmpty());
        QCOMPARE(contentOf(world.home.path(victim)), QByteArray("bytes"));
        QVERIFY(!QFileInfo(restored).isSymLink() && !QFile::exists(restored));
        QVERIFY(QFile::exists(world.home.dataPath(u"state.json"_s)));
    }

    void aCopyOfADataFolderUsesItsOwnCopies()
    {
        StoreWorld world;
        for (const QString& name : {u"purged"_s, u"deleted"_s, u"restored"_s}) {
            world.store().deleteNow(world.add(world.home.makeFile(name, name.toUtf8())));
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
        QCOMPARE(contentOf(world.home.path(u"restored"_s)), QByteArray("restored"));
    }

    void aDataFolderReachedByALinkIsStillItsOwn()
    {
        StoreWorld world(false);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        QVERIFY(QFile::link(world.home.dataPath(), world.home.path(u"by link"_s)));

        startWith(world, {recordAt(world.home.path(u"by link/Recovery/a.txt"_s), world.time.now())});

        QVERIFY(!QFile::exists(copy));
        QVERIFY(world.store().recoveryItems().isEmpty());
    }

    void aParkedLinkGoesAndNotWhatItLeadsTo()
    {
        StoreWorld world(false);
        const QString kept = world.home.makeFile(u"Documents/a.txt"_s);
        const QString link = world.home.path(recoveryFolder + u"/link"_s);
        world.home.makeFolder(recoveryFolder);
        QVERIFY(QFile::link(world.home.path(u"Documents"_s), link));

        startWith(world, {recordAt(link, world.time.now())});

        QVERIFY(!QFileInfo(link).isSymLink());
        QVERIFY(QFile::exists(kept));
    }
};

QTEST_GUILESS_MAIN(RecoveryPurge_test)

#include "RecoveryPurge_test.moc"
