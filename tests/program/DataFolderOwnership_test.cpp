// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "Privileges.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(path.toUtf8().constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

void setMode(const QString& path, mode_t mode)
{
    QCOMPARE(::chmod(path.toUtf8().constData(), mode), 0);
}

} // namespace

/// The program at a start, in a data folder as other users, another program or a backup may have left it.
class DataFolderOwnership_test final : public QObject
{
    Q_OBJECT

private slots:

    void aFolderThatOthersMayLookIntoIsShutForThem()
    {
        const TemporaryHome home;
        const SessionBus bus;
        home.writeDataFile(u"Recovery/parked"_s, "secret");
        setMode(home.dataPath(), 0755);
        setMode(home.dataPath(u"Recovery"_s), 0755);

        LapsaProcess lapsa;
        QTRY_COMPARE(modeOf(home.dataPath(u"state.json"_s)), mode_t{0600});
        QCOMPARE(lapsa.terminate(), 0);

        QCOMPARE(modeOf(home.dataPath()), mode_t{0700});
        QCOMPARE(modeOf(home.dataPath(u"Recovery"_s)), mode_t{0700});
    }

    void aFolderThatOthersMayWriteIsRefused()
    {
        const TemporaryHome home;
        const SessionBus bus;
        home.writeDataFile(u"state.json"_s, "kept");
        setMode(home.dataPath(), 0777);

        LapsaProcess lapsa;

        QCOMPARE(lapsa.exitCode(), 1);
        QVERIFY(lapsa.standardError().contains("Lapsa cannot start: other users may write to the data folder\n"));
        QCOMPARE(home.dataFile(u"state.json"_s), "kept");
        QCOMPARE(modeOf(home.dataPath()), mode_t{0777});
    }

    void aFolderOfSomebodyElseIsRefused()
    {
        if (::geteuid() != 0) {
            QSKIP("gives a folder to another user, which needs root");
        }
        const TemporaryHome home;
        const SessionBus bus;
        home.writeDataFile(u"state.json"_s, "kept");
        giveToOrdinaryUser(home.dataPath());

        LapsaProcess lapsa;

        QCOMPARE(lapsa.exitCode(), 1);
        QVERIFY(lapsa.standardError().contains("Lapsa cannot start: the data folder belongs to another user\n"));
        QCOMPARE(home.dataFile(u"state.json"_s), "kept");
    }

    void aSignalOfAFailingWriteDoesNotEndIt_data()
    {
        QTest::addColumn<int>("signal");
        QTest::newRow("a reader of standard error that is gone") << SIGPIPE;
        QTest::newRow("a file that may not get larger") << SIGXFSZ;
        QTest::newRow("a lease that somebody breaks") << SIGIO;
    }

    void aSignalOfAFailingWriteDoesNotEndIt()
    {
        QFETCH(int, signal);
        const TemporaryHome home;
        const SessionBus bus;
        LapsaProcess lapsa;
        QTRY_COMPARE(modeOf(home.dataPath(u"state.json"_s)), mode_t{0600});

        lapsa.send(signal);

        QCOMPARE(lapsa.terminate(), 0);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::DataFolderOwnership_test)
#include "DataFolderOwnership_test.moc"
