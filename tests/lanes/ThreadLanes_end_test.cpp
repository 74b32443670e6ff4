// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneJob.h"
#include "PlayedWork.h"
#include "QtMainQueue.h"
#include "ThreadLanes.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTest>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;
constexpr Lanes::AtTheEnd drop = Lanes::AtTheEnd::Drop;

} // namespace

class ThreadLanesEndTest final : public QObject
{
    Q_OBJECT

private slots:

    void theEndDropsWhatWaitsAndRunsWhatHasTo()
    {
        ThreadLanes lanes(m_queue);
        QStringList reports;
        Gate gate;
        lanes.runOn(u"a"_s, gate.work([&] { reports << u"running"_s; }), drop);
        gate.awaitEntry();
        lanes.runOn(u"a"_s, noting(reports, u"dropped"_s), drop);
        lanes.runOn(u"a"_s, noting(reports, u"kept"_s), Lanes::AtTheEnd::Run);
        gate.open();

        QVERIFY(lanes.finish(20s));

        QCOMPARE(reports, (QStringList{u"running"_s, u"kept"_s}));
    }

    void looksAreAwaitedAndWhatTheyAskForButNotOtherWork()
    {
        ThreadLanes lanes(m_queue);
        QStringList reports;
        Gate look;
        Gate copy;
        lanes.run(u"/tmp/a"_s, copy.work([&] { reports << u"copied"_s; }));
        lanes.look(u"/tmp/b"_s, look.work([&] {
            reports << u"seen"_s;
            lanes.look(u"/tmp/c"_s, noting(reports, u"seen next"_s));
        }));
        copy.awaitEntry();

        QVERIFY(!lanes.awaitLooks(50ms));
        QCOMPARE(reports, QStringList());
        look.open();

        QVERIFY(lanes.awaitLooks(60s));
        QCOMPARE(reports, (QStringList{u"seen"_s, u"seen next"_s}));
    }

    void theEndDoesNotWaitForWhatHangs()
    {
        Gate gate;
        ThreadLanes lanes(m_queue, {.hangsAfter = 40ms});
        bool hangs = false;
        lanes.onHanging([&](const QString&) { hangs = true; }, {});
        lanes.runOn(u"a"_s, gate.work({}), drop);
        QTRY_VERIFY_WITH_TIMEOUT(hangs, patience);

        QVERIFY(lanes.finish(std::chrono::minutes(5)));
    }

    void aLaneThatDoesNotComeBackIsNotAwaitedForGood()
    {
        ThreadLanes lanes(m_queue);
        Gate gate;
        bool reported = false;
        lanes.runOn(u"a"_s, gate.work([&] { reported = true; }), drop);

        QVERIFY(!lanes.await(u"a"_s, 50ms));
        QVERIFY(!reported);
        gate.open();

        QVERIFY(lanes.await(u"a"_s, 60s));
        QVERIFY(reported);
    }

    void theEndAsksWhatRunsToStop()
    {
        ThreadLanes lanes(m_queue);
        std::atomic<bool> began = false;
        bool reported = false;
        lanes.runOn(
            u"a"_s,
            [&](LaneJob& running) -> Lanes::Report {
                began = true;
                while (!running.stopRequested()) {
                    running.alive();
                }
                return [&] { reported = true; };
            },
            drop);
        QTRY_VERIFY_WITH_TIMEOUT(began, patience);

        QVERIFY(lanes.finish(20s));
        QVERIFY(reported);
    }

    void aReportWhoseLanesAreGoneIsLost()
    {
        bool reported = false;
        Gate gate;
        {
            ThreadLanes lanes(m_queue);
            lanes.runOn(u"a"_s, gate.work([&] { reported = true; }), drop);
            gate.awaitEntry();
        }
        const qsizetype before = threads();

        gate.open();

        QTRY_VERIFY_WITH_TIMEOUT(threads() < before, patience);
        QCoreApplication::processEvents();
        QVERIFY(!reported);
    }

private:
    QtMainQueue m_queue;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::ThreadLanesEndTest)
#include "ThreadLanes_end_test.moc"
