// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneJob.h"
#include "PlayedWork.h"
#include "QtMainQueue.h"
#include "ThreadLanes.h"

#include <QElapsedTimer>
#include <QStringList>
#include <QTest>
#include <QThread>

#include <atomic>
#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;
constexpr Lanes::AtTheEnd drop = Lanes::AtTheEnd::Drop;

/// Counts the timers that are under way.
class CountingQueue final : public MainQueue
{
public:
    void async(std::function<void()> task) override { m_queue.async(std::move(task)); }

    std::unique_ptr<ScheduledTask> asyncAfter(std::chrono::milliseconds delay, std::function<void()> task) override
    {
        return std::make_unique<Counted>(timers, m_queue.asyncAfter(delay, std::move(task)));
    }

    std::unique_ptr<ScheduledTask> repeatEvery(std::chrono::milliseconds interval, std::function<void()> task) override
    {
        return std::make_unique<Counted>(timers, m_queue.repeatEvery(interval, std::move(task)));
    }

    int timers = 0;

private:
    class Counted final : public ScheduledTask
    {
    public:
        Counted(int& timers, std::unique_ptr<ScheduledTask> task)
            : m_timers(timers)
            , m_task(std::move(task))
        {
            ++m_timers;
        }

        ~Counted() override { --m_timers; }

    private:
        int& m_timers;
        std::unique_ptr<ScheduledTask> m_task;
    };

    QtMainQueue m_queue;
};

} // namespace

class ThreadLanesTest final : public QObject
{
    Q_OBJECT

private slots:

    void workLeavesTheMainThreadAndItsReportComesBackToIt()
    {
        ThreadLanes lanes(m_queue);
        std::atomic<Qt::HANDLE> worker = nullptr;
        Qt::HANDLE reporter = nullptr;

        lanes.run(u"/tmp/a"_s, [&](LaneJob&) -> Lanes::Report {
            worker = QThread::currentThreadId();
            return [&] { reporter = QThread::currentThreadId(); };
        });

        QTRY_VERIFY_WITH_TIMEOUT(reporter != nullptr, patience);
        QCOMPARE(reporter, QThread::currentThreadId());
        QVERIFY(worker.load() != QThread::currentThreadId());
    }

    void oneLaneKeepsItsOrder()
    {
        ThreadLanes lanes(m_queue);
        QStringList expected;
        QStringList reports;

        for (int i = 0; i < 2000; ++i) {
            expected << QString::number(i);
            lanes.runOn(u"a"_s, noting(reports, expected.constLast()), drop);
        }

        QTRY_COMPARE_WITH_TIMEOUT(reports.size(), 2000, patience);
        QCOMPARE(reports, expected);
    }

    void aLaneThatIsBusyHoldsUpNoOther()
    {
        ThreadLanes lanes(m_queue);
        Gate gate;
        QStringList reports;

        lanes.runOn(u"slow"_s, gate.work([&] { reports << u"slow"_s; }), drop);
        lanes.runOn(u"quick"_s, noting(reports, u"quick"_s), drop);

        QTRY_COMPARE_WITH_TIMEOUT(reports, QStringList{u"quick"_s}, patience);
        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(reports, (QStringList{u"quick"_s, u"slow"_s}), patience);
    }

    void whatIsStoppedBeforeItBeginsNeverRuns()
    {
        ThreadLanes lanes(m_queue);
        Gate gate;
        QStringList reports;
        lanes.runOn(u"a"_s, gate.work([&] { reports << u"first"_s; }), drop);
        const auto stopped = lanes.runOn(u"a"_s, noting(reports, u"stopped"_s), drop);
        lanes.runOn(u"a"_s, noting(reports, u"last"_s), drop);

        stopped->stop();
        gate.open();

        QTRY_COMPARE_WITH_TIMEOUT(reports, (QStringList{u"first"_s, u"last"_s}), patience);
        QCOMPARE(stopped->state(), LaneJob::State::Finished);
    }

    void whatRunsIsAskedToStopAndStillReports()
    {
        ThreadLanes lanes(m_queue);
        std::optional<std::int64_t> reached;
        const auto job = lanes.runOn(
            u"a"_s,
            [&](LaneJob& running) -> Lanes::Report {
                std::int64_t steps = 0;
                while (!running.stopRequested()) {
                    running.report(++steps, 0);
                }
                return [&reached, steps] { reached = steps; };
            },
            drop);

        QTRY_VERIFY_WITH_TIMEOUT(job->done() > 0, patience);
        QCOMPARE(job->state(), LaneJob::State::Running);
        job->stop();

        QTRY_VERIFY_WITH_TIMEOUT(reached.has_value(), patience);
        QCOMPARE(job->done(), *reached);
    }

    void whatHangsIsSetAsideAndTheRestGoesOn()
    {
        ThreadLanes lanes(m_queue, {.hangsAfter = 40ms});
        QStringList reports;
        QStringList told;
        lanes.onHanging([&](const QString& lane) { told << u"hangs "_s + lane; },
                        [&](const QString& lane) { told << u"back "_s + lane; });
        Gate gate;
        const auto hanging = lanes.runOn(u"a"_s, gate.work([&] { reports << u"hung"_s; }), drop);
        lanes.runOn(u"a"_s, noting(reports, u"rest"_s), drop);

        QTRY_COMPARE_WITH_TIMEOUT(reports, QStringList{u"rest"_s}, patience);
        QCOMPARE(hanging->state(), LaneJob::State::Hanging);
        QCOMPARE(told, QStringList{u"hangs :a"_s});

        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(reports, (QStringList{u"rest"_s, u"hung"_s}), patience);
        QTRY_COMPARE_WITH_TIMEOUT(told, (QStringList{u"hangs :a"_s, u"back :a"_s}), patience);
        QCOMPARE(hanging->state(), LaneJob::State::Finished);
    }

    void workThatKeepsItsOrderIsNeverOvertaken()
    {
        ThreadLanes lanes(m_queue, {.hangsAfter = 40ms});
        QStringList reports;
        Gate gate;
        lanes.runOn(u"a"_s, gate.work([&] { reports << u"older"_s; }), Lanes::AtTheEnd::Run);
        lanes.runOn(u"a"_s, noting(reports, u"newer"_s), Lanes::AtTheEnd::Run);
        gate.awaitEntry();
        Gate other;
        bool hangs = false;
        lanes.onHanging([&](const QString&) { hangs = true; }, {});
        lanes.runOn(u"b"_s, other.work({}), drop); // when this one hangs, the first has been watched as long

        QTRY_VERIFY_WITH_TIMEOUT(hangs, patience);
        QVERIFY(reports.isEmpty());
        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(reports, (QStringList{u"older"_s, u"newer"_s}), patience);
    }

    void longWorkThatGivesSignsOfLifeIsNotSetAside()
    {
        ThreadLanes lanes(m_queue, {.hangsAfter = 1s});
        bool hung = false;
        lanes.onHanging([&](const QString&) { hung = true; }, {});
        bool reported = false;
        lanes.runOn(
            u"a"_s,
            [&](LaneJob& running) -> Lanes::Report {
                QElapsedTimer working;
                working.start();
                while (working.elapsed() < 3000) {
                    running.alive();
                }
                return [&] { reported = true; };
            },
            drop);

        QTRY_VERIFY_WITH_TIMEOUT(reported, patience);
        QVERIFY(!hung);
    }

    void onlySoManyHangAtOnce()
    {
        ThreadLanes lanes(m_queue, {.hangsAfter = 40ms, .mostSetAside = 2});
        QStringList reports;
        int hanging = 0;
        lanes.onHanging([&](const QString&) { ++hanging; }, {});
        Gate gate;
        for (int i = 0; i < 5; ++i) {
            lanes.runOn(u"dead"_s, gate.work([&] { reports << u"dead"_s; }), drop);
        }
        lanes.runOn(u"sound"_s, noting(reports, u"sound"_s), drop);

        QTRY_COMPARE_WITH_TIMEOUT(hanging, 2, patience);
        QTRY_COMPARE_WITH_TIMEOUT(reports, QStringList{u"sound"_s}, patience);
        gate.awaitEntry();
        gate.awaitEntry();
        // A lane of another mount begins and ends: a third thread for the dead one had had its time.
        lanes.runOn(u"sound"_s, noting(reports, u"again"_s), drop);
        QTRY_COMPARE_WITH_TIMEOUT(reports, (QStringList{u"sound"_s, u"again"_s}), patience);
        QCOMPARE(hanging, 2);

        gate.open();
        QTRY_COMPARE_WITH_TIMEOUT(reports.count(u"dead"_s), 5, patience);
    }

    void thereIsNeitherThreadNorTimerAtRest()
    {
        CountingQueue queue;
        ThreadLanes lanes(queue);
        const qsizetype before = threads();
        QStringList reports;

        for (const QString& name : {u"a"_s, u"b"_s, u"c"_s}) {
            lanes.runOn(name, noting(reports, name), drop);
        }
        QCOMPARE(queue.timers, 1);

        QTRY_COMPARE_WITH_TIMEOUT(reports.size(), 3, patience);
        QTRY_COMPARE_WITH_TIMEOUT(threads(), before, patience);
        QTRY_COMPARE_WITH_TIMEOUT(queue.timers, 0, patience);
    }

private:
    QtMainQueue m_queue;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::ThreadLanesTest)
#include "ThreadLanes_test.moc"
