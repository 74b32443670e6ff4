// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ListService.h"
#include "StoreWorld.h"

#include <QSignalSpy>
#include <QTest>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

class ListServiceTest final : public QObject
{
    Q_OBJECT

private slots:

    void aBurstOfChangesIsOneSignal()
    {
        StoreWorld world;
        ListService service(world.store(), world.time);
        QSignalSpy items(&service, &ListService::itemsChanged);
        QSignalSpy records(&service, &ListService::recoveryChanged);

        for (int i = 0; i < 50; ++i) {
            world.add(world.home.makeFile(u"%1.txt"_s.arg(i)));
        }
        QCOMPARE(items.size(), 0);
        world.time.advance(250ms);

        QCOMPARE(items.size(), 1);
        QCOMPARE(records.size(), 0);
        world.time.advance(1h);
        QCOMPARE(items.size(), 1);
    }

    void aStreamOfChangesIsHeardFourTimesASecond()
    {
        StoreWorld world;
        ListService service(world.store(), world.time);
        QSignalSpy items(&service, &ListService::itemsChanged);

        for (int i = 0; i < 100; ++i) {
            world.add(world.home.makeFile(u"%1.txt"_s.arg(i)));
            world.time.advance(10ms);
        }

        QCOMPARE(items.size(), 4);
    }

    void whatIsNoChangeOfAListIsNotSignalled()
    {
        StoreWorld world;
        ListService service(world.store(), world.time);
        QSignalSpy items(&service, &ListService::itemsChanged);
        QSignalSpy records(&service, &ListService::recoveryChanged);

        world.store().setLastMessage(u"a message"_s);
        world.time.advance(1s);

        QCOMPARE(items.size() + records.size(), 0);
    }

    void aDisposalChangesBothLists()
    {
        StoreWorld world;
        ListService service(world.store(), world.time);
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));
        world.time.advance(1s);
        QSignalSpy items(&service, &ListService::itemsChanged);
        QSignalSpy records(&service, &ListService::recoveryChanged);

        world.deleted(item);
        world.time.advance(1s);

        QCOMPARE(items.size(), 1);
        QCOMPARE(records.size(), 1);
    }

    void aDiskThatDoesNotAnswerIsTold()
    {
        StoreWorld world;
        ListService service(world.store(), world.time);
        const QString file = world.home.makeFile(u"a.txt"_s);
        QList<QList<ListService::AddOutcome>> answers;
        world.lanes.setRuns(ManualLanes::Runs::WhenTheTestSaysSo);

        service.add({file}, 0, [&answers](const auto& outcomes) { answers.push_back(outcomes); });
        world.time.advance(4s);
        QCOMPARE(answers.size(), 0);
        world.time.advance(1s);

        QCOMPARE(answers.size(), 1);
        QCOMPARE(answers[0].size(), 1);
        QVERIFY(!answers[0][0].item && !answers[0][0].nothingThere && !answers[0][0].refusal);
        world.lanes.runAll();
        world.time.advance(1s);
        QCOMPARE(answers.size(), 1);
        QCOMPARE(service.items().size(), 1);
    }

    void lockingTwiceLocksOnce()
    {
        StoreWorld world;
        ListService service(world.store(), world.time);
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s));

        QVERIFY(service.setLocked(item.id, true));
        QVERIFY(service.setLocked(item.id, true));
        QVERIFY(world.item(item.path).locked);
        QVERIFY(service.setLocked(item.id, false));
        QVERIFY(!world.item(item.path).locked);
        QVERIFY(!service.setLocked(u"unknown"_s, true));
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::ListServiceTest)
#include "ListService_test.moc"
