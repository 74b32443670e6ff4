// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DebouncedTask.h"
#include "ManualTime.h"

#include <QTest>

using namespace lapsa;
using namespace std::chrono_literals;

class DebouncedTask_test final : public QObject
{
    Q_OBJECT

private slots:

    void aBurstOfRequestsRunsTheTaskOnceAfterTheLast()
    {
        test::ManualTime time;
        int runs = 0;
        DebouncedTask task(time, 300ms, [&runs] { ++runs; });

        for (int request = 0; request < 3; ++request) {
            task.schedule();
            time.advance(100ms);
        }
        time.advance(199ms);
        QCOMPARE(runs, 0);
        time.advance(1ms);
        QCOMPARE(runs, 1);
        time.advance(1h);
        QCOMPARE(runs, 1);
    }

    void aCancelledRequestNeverRuns()
    {
        test::ManualTime time;
        int runs = 0;
        DebouncedTask task(time, 300ms, [&runs] { ++runs; });

        task.schedule();
        QVERIFY(task.pending());
        task.cancel();
        QVERIFY(!task.pending());
        time.advance(1s);

        QCOMPARE(runs, 0);
    }

    void aRequestThatOutlivesItsOwnerDoesNothing()
    {
        test::ManualTime time;
        int runs = 0;
        {
            DebouncedTask task(time, 300ms, [&runs] { ++runs; });
            task.schedule();
        }

        time.advance(1s);

        QCOMPARE(runs, 0);
        QCOMPARE(time.waitingTasks(), std::size_t{0});
    }

    void theTaskMayAskForItsNextRun()
    {
        test::ManualTime time;
        int runs = 0;
        DebouncedTask* self = nullptr;
        DebouncedTask task(time, 300ms, [&] {
            if (++runs < 3) {
                self->schedule();
            }
        });
        self = &task;

        task.schedule();
        time.advance(1s);

        QCOMPARE(runs, 3);
        QVERIFY(!task.pending());
    }
};

QTEST_GUILESS_MAIN(DebouncedTask_test)

#include "DebouncedTask_test.moc"
