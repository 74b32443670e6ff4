// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileTree.h"
#include "JSONEncoder.h"
#include "LogCapture.h"
#include "Privileges.h"
#include "ReadOnlyWorld.h"
#include "StoreSetup.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString recoveryName = u"recovery.json"_s;
const QString noteName = u"restoring.json"_s;

/// No file of this process can grow beyond so many bytes.
class SmallFilesOnly final
{
public:
    explicit SmallFilesOnly(rlim_t bytes)
        : m_action(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{.rlim_cur = bytes, .rlim_max = m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }

    SmallFilesOnly(const SmallFilesOnly&) = delete;
    SmallFilesOnly& operator=(const SmallFilesOnly&) = delete;

    ~SmallFilesOnly()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_action);
    }

private:
    rlimit m_before{};
    void (*m_action)(int);
};

/// What a copy that was cut short leaves in a folder of the home.
void makeLeftover(const StoreWorld& world, const QString& folder)
{
    const QString left = world.home.makeFile(folder + u"/.lapsa-copy-0123456789abcdef"_s);
    if (::chmod(left.toUtf8().constData(), S_ISVTX | S_IRWXU) != 0) {
        qFatal("cannot mark %s", qPrintable(left));
    }
}

} // namespace

class LapsaStore_recovery_restore_test final : public QObject
{
    Q_OBJECT

private slots:

    void restoringPutsTheFileBackAndDropsTheRecord()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(contentOf(parked.originalPath), QByteArray("bytes"));
        QVERIFY(!QFile::exists(parked.recoveryPath));
        QVERIFY(world.store().recoveryItems().isEmpty());
        QVERIFY(world.store().items().isEmpty()); // an ordinary file again
        world.letSavesPass();
        QCOMPARE(world.home.dataFile(recoveryName), QByteArray("[]\n"));
    }

    void restoringNeverOverwrites()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s, "parked");
        world.home.makeFile(u"a.txt"_s, "new");

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(contentOf(world.home.path(u"a.txt"_s)), QByteArray("new"));
        QCOMPARE(contentOf(world.home.path(u"a-1.txt"_s)), QByteArray("parked"));
    }

    void restoringMakesTheFolderAgain()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"some/deep folder/a.txt"_s);
        QVERIFY(QDir(world.home.path(u"some"_s)).removeRecursively());

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(contentOf(parked.originalPath), QByteArray("bytes"));
    }

    void restoringWithoutACopyDoesNothing()
    {
        StoreWorld world;
        const LapsaRecoveryItem parked = park(world, u"a.txt"_s);
        QVERIFY(QFile::remove(parked.recoveryPath));
        QFile::remove(world.home.dataPath(recoveryName));
        const LogCapture log;

        world.store().restoreRecoveryItem(parked);
        world.letSavesPass();

        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QCOMPARE(log.lines(), QStringList());
        QVERIFY(world.home.dataFile(recoveryName).isNull());
    }

    void aRestoreThatFailsIsLoggedAndKeepsRecordAndCopy_data()
    {
        QTest::addColumn<QString>("originalPath");
        QTest::addColumn<QString>("recoveryPath");
        QTest::addColumn<int>("code");

        QTest::newRow("the folder cannot be made")
            << u"%home%/in the way/a.txt"_s << u"%home%/.local/share/Lapsa/Recovery/copy.txt"_s << int{EEXIST};
        QTest::newRow("the original path is relative")
            << u"a.txt"_s << u"%home%/.local/share/Lapsa/Recovery/copy.txt"_s << int{EINVAL};
        QTest::newRow("the original path is empty")
            << QString() << u"%home%/.local/share/Lapsa/Recovery/copy.txt"_s << int{EINVAL};
        QTest::newRow("the copy is the home folder") << u"%home%/a.txt"_s << u"%home%"_s << int{EPERM};
        QTest::newRow("the copy is the root") << u"%home%/a.txt"_s << u"/"_s << int{EPERM};
    }

    void aRestoreThatFailsIsLoggedAndKeepsRecordAndCopy()
    {
        if (!inReadOnlyWorld()) {
            QSKIP("A failure here would cost files: the system allows no read-only world");
        }
        QFETCH(QString, originalPath);
        QFETCH(QString, recoveryPath);
        QFETCH(int, code);
        StoreWorld world(false);
        world.home.makeFile(u"in the way"_s);
        world.home.makeFile(recoveryFolder + u"/copy.txt"_s, "bytes");
        const QString home = world.home.path({});
        const LapsaRecoveryItem parked =
            recordAt(recoveryPath.replace(u"%home%"_s, home), distantFuture, originalPath.replace(u"%home%"_s, home));
        startWith(world, {parked});
        const LogCapture log;

        world.store().restoreRecoveryItem(parked);

        QCOMPARE(log.lines(),
                 QStringList{u"Lapsa recovery restore failed: "_s + FileError::fromErrno(code).description});
        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QCOMPARE(contentOf(world.home.path(recoveryFolder + u"/copy.txt"_s)), QByteArray("bytes"));
    }

    void whatAnInterruptedRestoreLeftIsRemovedAtStart()
    {
        StoreWorld world(false);
        const QString kept = world.home.makeFile(u"Documents/.lapsa-copy-kept"_s);
        makeLeftover(world, u"Documents"_s);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);
        const LapsaRecoveryItem parked = recordAt(copy, world.time.now() + 1h, world.home.path(u"Documents/a.txt"_s));
        world.home.writeDataFile(noteName, JSONEncoder::lapsa().encode(QList{parked}));

        startWith(world, {parked});

        QCOMPARE(world.home.names(u"Documents"_s), QStringList{u".lapsa-copy-kept"_s});
        QVERIFY(QFile::exists(copy));
        QVERIFY(world.home.dataFile(noteName).isNull());
    }

    void aStartLooksIntoNoFolderInWhichNoRestoreWasUnderWay()
    {
        StoreWorld world(false);
        makeLeftover(world, u"Documents"_s);
        const QString copy = world.home.makeFile(recoveryFolder + u"/a.txt"_s);

        startWith(world, {recordAt(copy, world.time.now() + 1h, world.home.path(u"Documents/a.txt"_s))});

        QCOMPARE(world.home.names(u"Documents"_s).size(), 1);
    }

    void aFolderThatIsAwayIsLookedForUntilTheRecordsTimeIsUp()
    {
        StoreWorld world(false);
        const LapsaRecoveryItem parked =
            recordAt(QString(), world.time.now() + 1h, world.home.path(u"Documents/a.txt"_s));
        world.home.writeDataFile(noteName, JSONEncoder::lapsa().encode(QList{parked}));
        startWith(world, {});
        QVERIFY(!world.home.dataFile(noteName).isNull());
        makeLeftover(world, u"Documents"_s);

        world.start();

        QCOMPARE(world.home.names(u"Documents"_s), QStringList());
        QVERIFY(world.home.dataFile(noteName).isNull());

        world.home.writeDataFile(noteName, JSONEncoder::lapsa().encode(QList{parked}));
        QVERIFY(QDir().rmdir(world.home.path(u"Documents"_s)));
        world.time.advance(1h);
        world.start();
        QVERIFY(world.home.dataFile(noteName).isNull());
    }

    void aRestoreToAnotherFileSystemIsNotedUntilItHasWorked()
    {
        if (!PrivateMounts::available()) {
            QSKIP("Needs root");
        }
        StoreWorld world;
        PrivateMounts mounts;
        const QString volume = world.home.path(u"volume"_s);
        mounts.mountTemporary(volume);
        const LapsaRecoveryItem parked = park(world, u"volume/a.txt"_s, QByteArray(100'000, 'x'));

        {
            const SmallFilesOnly limit(50'000);
            world.store().restoreRecoveryItem(parked); // ends in the middle
        }
        QCOMPARE(world.store().recoveryItems(), QList{parked});
        QVERIFY(world.home.dataFile(noteName).contains("a.txt"));

        world.store().restoreRecoveryItem(parked);
        QCOMPARE(contentOf(parked.originalPath).size(), 100'000);
        QVERIFY(world.home.dataFile(noteName).isNull());
    }
};

LAPSA_READ_ONLY_WORLD_MAIN(LapsaStore_recovery_restore_test)

#include "LapsaStore_recovery_restore_test.moc"
