// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DataFolderLock.h"
#include "DetachedProcess.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

class DataFolderLockTest final : public QObject
{
    Q_OBJECT

private slots:

    void aSecondLockOfTheSameFolderIsTurnedAwayUntilTheFirstGoes()
    {
        const QTemporaryDir folder;
        std::optional<DataFolderLock> first(std::in_place, folder.path(), 0ms);
        QVERIFY(!first->takenByAnother());

        QVERIFY(DataFolderLock(folder.path(), 0ms).takenByAnother());
        first.reset();

        QVERIFY(!DataFolderLock(folder.path(), 0ms).takenByAnother());
    }

    void theWaitForAPredecessorHasAnEnd()
    {
        const QTemporaryDir folder;
        const DataFolderLock first(folder.path(), 0ms);
        QElapsedTimer timer;
        timer.start();

        QVERIFY(DataFolderLock(folder.path(), 50ms).takenByAnother());

        QVERIFY(timer.elapsed() >= 50);
    }

    void theLockLeavesNoFile()
    {
        const QTemporaryDir folder;
        const DataFolderLock lock(folder.path(), 0ms);

        QVERIFY(QDir(folder.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot));
    }

    void aFolderThatIsNotThereIsNobodys() { QVERIFY(!DataFolderLock(u"/nonexistent/Lapsa"_s, 0ms).takenByAnother()); }

    void aProgramStartedFromHereDoesNotKeepTheLock()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath(u"pipe"_s);
        const QString started = folder.filePath(u"started"_s);
        {
            const DataFolderLock lock(folder.path(), 0ms);
            QVERIFY(startDetached({"sh", "-c", "mkfifo \"$1\"; : > \"$2\"; read line < \"$1\"", "sh",
                                   QFile::encodeName(pipe), QFile::encodeName(started)}));
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(started), 20'000);
        }

        const bool taken = DataFolderLock(folder.path(), 0ms).takenByAnother();
        QFile end(pipe);
        QVERIFY(end.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        QCOMPARE(end.write("end\n"), 4);

        QVERIFY(!taken);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::DataFolderLockTest)
#include "DataFolderLock_test.moc"
