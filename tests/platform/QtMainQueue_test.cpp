// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "QtMainQueue.h"

#include <QElapsedTimer>
#include <QTest>

using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

} // namespace

class QtMainQueueTest final : public QObject
{
    Q_OBJECT

private slots:

    void asyncRunsOnALaterTurnInOrder()
    {
        QtMainQueue queue;
        QString order;

        queue.async([&order] { order += u'a'; });
        queue.async([&order] { order += u'b'; });
        order += u'0';

        QTRY_COMPARE_WITH_TIMEOUT(order, QStringLiteral("0ab"), patience);
    }

    void aDelayedTaskRunsOnceAndNeverEarly()
    {
        QtMainQueue queue;
        int runs = 0;
        qint64 elapsed = 0;
        QElapsedTimer timer;
        timer.start();

        const auto task = queue.asyncAfter(300ms, [&] {
            ++runs;
            elapsed = timer.elapsed();
        });

        QTRY_VERIFY_WITH_TIMEOUT(runs > 0, patience);
        QVERIFY2(elapsed >= 300, qPrintable(QString::number(elapsed)));
        // A later task of the same length has run: time enough for a second run.
        bool later = false;
        const auto witness = queue.asyncAfter(350ms, [&later] { later = true; });
        QTRY_VERIFY_WITH_TIMEOUT(later, patience);
        QCOMPARE(runs, 1);
    }

    void aTaskWhoseHandleIsGoneNeverRuns()
    {
        QtMainQueue queue;
        bool ran = false;
        bool later = false;
        auto task = queue.asyncAfter(10ms, [&ran] { ran = true; });
        auto repeating = queue.repeatEvery(10ms, [&ran] { ran = true; });
        const auto witness = queue.asyncAfter(30ms, [&later] { later = true; });

        task.reset();
        repeating.reset();

        QTRY_VERIFY_WITH_TIMEOUT(later, patience);
        QVERIFY(!ran);
    }

    void aTaskMayEndItself()
    {
        QtMainQueue queue;
        int runs = 0;
        std::unique_ptr<ScheduledTask> task;
        task = queue.repeatEvery(1ms, [&] {
            ++runs;
            task.reset();
        });

        QTRY_VERIFY_WITH_TIMEOUT(!task, patience);
        QCOMPARE(runs, 1);
    }

    void aRepeatingTaskRunsAgainAndAgain()
    {
        QtMainQueue queue;
        int runs = 0;

        const auto task = queue.repeatEvery(5ms, [&runs] { ++runs; });

        QTRY_VERIFY_WITH_TIMEOUT(runs >= 3, patience);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::QtMainQueueTest)
#include "QtMainQueue_test.moc"
