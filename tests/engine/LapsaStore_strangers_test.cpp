// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "Privileges.h"
#include "StoreWorld.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

/// A folder that another user of the machine may change, watched and with items in it.
class LapsaStore_strangers_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase()
    {
        if (!test::PrivateMounts::available()) {
            QSKIP("gives folders to another user, which needs root");
        }
    }

    void aFolderExchangedForALinkCostsNothing_data() { wayRows(); }

    void aFolderExchangedForALinkCostsNothing()
    {
        QFETCH(bool, watched);
        QFETCH(bool, restarted);
        test::StoreWorld world;
        const QString path = listedFile(world, watched);
        const QString precious = world.home.makeFile(u"Documents/thesis.tex"_s, "years of work\n");
        QVERIFY(QDir().rename(world.home.path(u"group/inbox"_s), world.home.path(u"group/aside"_s)));
        QVERIFY(QFile::link(world.home.path(u"Documents"_s), world.home.path(u"group/inbox"_s)));
        test::giveTo(test::ordinaryUser, world.home.path(u"group/inbox"_s));

        const QStringList log = expire(world, restarted);

        QVERIFY(QFile::exists(precious));
        QCOMPARE(log, QStringList{failure(path)});
        QVERIFY(world.listedNames().isEmpty());
    }

    void aFolderExchangedForOneOfTheUsersCostsNothing_data() { wayRows(); }

    void aFolderExchangedForOneOfTheUsersCostsNothing()
    {
        QFETCH(bool, watched);
        QFETCH(bool, restarted);
        test::StoreWorld world;
        const QString path = listedFile(world, watched);
        exchangeForOneOfTheUsers(world);

        const QStringList log = expire(world, restarted);

        QCOMPARE(world.home.names(u"group/inbox"_s), (QStringList{u"other.tex"_s, u"thesis.tex"_s}));
        QCOMPARE(log, QStringList{failure(path)});
        QVERIFY(world.listedNames().isEmpty());
    }

    void theListOfAnEarlierVersionIsNotedByTheNextPass_data() { wayRows(); }

    void theListOfAnEarlierVersionIsNotedByTheNextPass()
    {
        QFETCH(bool, watched);
        QFETCH(bool, restarted);
        test::StoreWorld world;
        const QString path = listedFile(world, watched);
        world.stop();
        QVERIFY(QFile::remove(world.home.path(u".local/state/Lapsa/paths.json"_s)));
        world.start();
        world.store().scanAutoCleanFolders();
        world.letSavesPass();
        exchangeForOneOfTheUsers(world);

        const QStringList log = expire(world, restarted);

        QCOMPARE(world.home.names(u"group/inbox"_s), (QStringList{u"other.tex"_s, u"thesis.tex"_s}));
        QCOMPARE(log, QStringList{failure(path)});
        QVERIFY(world.listedNames().isEmpty());
    }

    void aFolderThatBecameSharedIsNotedByTheNextStart()
    {
        test::StoreWorld world;
        const QString path = world.add(world.home.makeFile(u"group/inbox/thesis.tex"_s)).path;
        world.changeSettings([](LapsaSettings& settings) { settings.useRecoveryWindow = false; });
        share(world);
        world.start();
        world.time.settle(); // the first turn of the event loop
        exchangeForOneOfTheUsers(world);

        const QStringList log = expire(world, false);

        QCOMPARE(log, QStringList{failure(path)});
        QVERIFY(QFile::exists(path));
    }

    /// A start must not wait for a disk that does not answer.
    void whatAProgramServesIsNotLookedAtByAStart()
    {
        test::StoreWorld world;
        listedFile(world, false);
        world.stop();
        QVERIFY(QFile::remove(world.home.path(u".local/state/Lapsa/paths.json"_s)));
        const int server = ::open("/dev/fuse", O_RDWR | O_CLOEXEC); // it never answers
        if (server < 0) {
            QSKIP("a file system of a program's is mounted, which needs FUSE");
        }
        {
            test::PrivateMounts mounts;
            mounts.mount("fuse", world.home.path(u"group"_s),
                         "fd=" + QByteArray::number(server) + ",rootmode=40777,user_id=0,group_id=0");

            world.start();
            world.letSavesPass();
        }
        ::close(server);

        QCOMPARE(world.listedNames(), QStringList{u"thesis.tex"_s});
        QVERIFY(!known(world).contains("inbox"));
    }

    void aFolderThatNobodyExchangedIsServed_data() { wayRows(); }

    void aFolderThatNobodyExchangedIsServed()
    {
        QFETCH(bool, watched);
        QFETCH(bool, restarted);
        test::StoreWorld world;
        const QString path = listedFile(world, watched);

        const QStringList log = expire(world, restarted);

        QVERIFY(log.isEmpty());
        QVERIFY(!QFile::exists(path));
    }

    void whatTheUserAddsAgainIsTakenFromWhereItIsThen()
    {
        test::StoreWorld world;
        const QString path = listedFile(world, false);
        QVERIFY(QDir().rename(world.home.path(u"group/inbox"_s), world.home.path(u"group/aside"_s)));
        world.home.makeFile(u"group/inbox/thesis.tex"_s);
        world.add(path);
        world.letSavesPass();

        const QStringList log = expire(world, true);

        QVERIFY(log.isEmpty());
        QVERIFY(!QFile::exists(path));
    }

    void pathsThatAreNotListedAnyMoreAreForgotten()
    {
        test::StoreWorld world;
        const LapsaItem item = world.item(listedFile(world, false));
        QVERIFY(known(world).contains("inbox"));

        world.store().removeFromList(item);
        world.letSavesPass();

        QVERIFY(!known(world).contains("inbox"));
    }

    void aNoteThatWasCutShortIsGoneAfterTheNextStart()
    {
        test::StoreWorld world(false);
        const QString folder = u".local/state/Lapsa"_s;
        world.home.makeFile(folder + u"/.paths.json.0123456789abcdef.tmp"_s, "{");

        world.start();
        world.store().saveNow();

        QCOMPARE(world.home.names(folder), QStringList{u"paths.json"_s});
    }

    void whatOnlyTheUserMayChangeIsNotNoted()
    {
        test::StoreWorld world;
        world.add(world.home.makeFile(u"private/file"_s));
        world.letSavesPass();

        QVERIFY(known(world).isEmpty());
    }

private:
    static void wayRows()
    {
        QTest::addColumn<bool>("watched");
        QTest::addColumn<bool>("restarted");
        QTest::newRow("an item") << false << false;
        QTest::newRow("an item, after a restart") << false << true;
        QTest::newRow("a watched folder") << true << false;
        QTest::newRow("a watched folder, after a restart") << true << true;
    }

    /// group/inbox/thesis.tex, in a folder of another user's, on countdown.
    static QString listedFile(test::StoreWorld& world, bool watched)
    {
        const QString path = world.home.makeFile(u"group/inbox/thesis.tex"_s, "a draft\n");
        share(world);
        world.changeSettings([](LapsaSettings& settings) { settings.useRecoveryWindow = false; });
        world.changeSettings([](LapsaSettings& settings) { settings.useTrash = false; });
        if (watched) {
            world.store().addAutoCleanFolder(QUrl::fromLocalFile(world.home.path(u"group/inbox"_s)));
            world.changeSettings(
                [](LapsaSettings& settings) { settings.autoCleanFolders.first().includeExistingFiles = true; });
            world.store().scanAutoCleanFolders();
        } else {
            world.add(path);
        }
        world.letSavesPass();
        return path;
    }

    static void share(const test::StoreWorld& world)
    {
        for (const QString& folder : {u"group"_s, u"group/inbox"_s}) {
            test::giveTo(test::ordinaryUser, world.home.path(folder));
            ::chmod(world.home.path(folder).toUtf8().constData(), 0777);
        }
    }

    static void exchangeForOneOfTheUsers(const test::StoreWorld& world)
    {
        world.home.makeFile(u"group/mine/thesis.tex"_s, "years of work\n");
        world.home.makeFile(u"group/mine/other.tex"_s, "years of work\n");
        QVERIFY(QDir().rename(world.home.path(u"group/inbox"_s), world.home.path(u"group/aside"_s)));
        QVERIFY(QDir().rename(world.home.path(u"group/mine"_s), world.home.path(u"group/inbox"_s)));
    }

    /// A year passes; what the log says of it.
    static QStringList expire(test::StoreWorld& world, bool restarted)
    {
        if (restarted) {
            world.start();
        }
        const test::LogCapture log;
        world.time.advance(24h * 365);
        world.store().scanAutoCleanFolders();
        world.store().deleteExpiredItems();
        return log.lines();
    }

    static QString failure(const QString& path)
    {
        return u"Lapsa failed to delete "_s + path + u": "_s + FileError::fromErrno(EACCES).description;
    }

    static QByteArray known(const test::StoreWorld& world)
    {
        QFile file(world.home.path(u".local/state/Lapsa/paths.json"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

QTEST_GUILESS_MAIN(LapsaStore_strangers_test)
#include "LapsaStore_strangers_test.moc"
