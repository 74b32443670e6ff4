// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CleanupWorld.h"

#include <QTest>

#include <algorithm>

using namespace lapsa;
using namespace lapsa::test;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class CleanupService_warnings_test final : public QObject
{
    Q_OBJECT

private slots:

    void anItemCloseToItsEndIsWarnedAboutOnceWithTheConfiguredMinutes()
    {
        CleanupWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);
        world.time.advance(30s); // 4 minutes 30 seconds left

        world.service->tick();
        QCOMPARE(world.warnings.sent, (Warnings{{item.id, 5}}));
        QVERIFY(world.item(item.path).fiveMinuteWarningSent);
        world.time.advance(1min);
        world.service->tick();

        QCOMPARE(world.warnings.sent.size(), 1);
        QVERIFY(world.home.dataFile(u"state.json"_s).contains("\"fiveMinuteWarningSent\" : true"));
    }

    void theLeadTimeIsInclusiveAndItsEndIsNot_data()
    {
        QTest::addColumn<qint64>("microsecondsLeft");
        QTest::addColumn<bool>("warned");
        QTest::addColumn<bool>("deleted");

        constexpr qint64 lead = 300'000'000;
        QTest::newRow("a little more than the lead time") << lead + 1 << false << false;
        QTest::newRow("exactly the lead time") << lead << true << false;
        QTest::newRow("one microsecond") << qint64{1} << true << false;
        QTest::newRow("nothing") << qint64{0} << false << true;
        QTest::newRow("less than nothing") << qint64{-1} << false << true;
    }

    void theLeadTimeIsInclusiveAndItsEndIsNot()
    {
        QFETCH(qint64, microsecondsLeft);
        QFETCH(bool, warned);
        QFETCH(bool, deleted);
        CleanupWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 60);
        world.time.setClock(item.expiresAt - std::chrono::microseconds{microsecondsLeft});

        world.service->tick();

        QCOMPARE(world.warnings.sent.size(), warned ? 1 : 0);
        QCOMPARE(item.exists(), !deleted);
    }

    void aLockedItemIsNeitherWarnedAboutNorDeleted()
    {
        CleanupWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);
        world.store().toggleLock(item);

        world.service->tick();
        world.time.advance(10min);
        world.service->tick();

        QCOMPARE(world.warnings.sent, Warnings());
        QVERIFY(item.exists());
        QCOMPARE(world.store().items().size(), 1);
    }

    void withWarningsOffNoneIsSent()
    {
        CleanupWorld world;
        world.changeSettings([](LapsaSettings& settings) { settings.enableExpiryNotifications = false; });
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);

        world.service->tick();

        QCOMPARE(world.warnings.sent, Warnings());
        QVERIFY(!world.item(item.path).fiveMinuteWarningSent);
    }

    void aCountdownThatIsExtendedIsWarnedAboutAgain()
    {
        CleanupWorld world;
        const LapsaItem item = world.add(world.home.makeFile(u"a.txt"_s), 5);
        world.service->tick();

        world.store().updateExpiration(item, 3);
        world.service->tick();

        QCOMPARE(world.warnings.sent, (Warnings{{item.id, 5}, {item.id, 5}}));
    }

    void severalItemsAreWarnedAboutInListOrder()
    {
        CleanupWorld world;
        const LapsaItem first = world.add(world.home.makeFile(u"b.txt"_s), 4);
        world.add(world.home.makeFile(u"later.txt"_s), 60);
        const LapsaItem second = world.add(world.home.makeFile(u"a.txt"_s), 3);

        world.service->tick();

        QCOMPARE(world.warnings.sent, (Warnings{{first.id, 5}, {second.id, 5}}));
    }

    void ofManyItemsTenAreWarnedAboutOneByOneAndTheOthersTogether_data()
    {
        QTest::addColumn<int>("due");
        QTest::addColumn<int>("single");
        QTest::addColumn<int>("together");

        QTest::newRow("as many as come one by one") << 10 << 10 << 0;
        QTest::newRow("one more") << 11 << 10 << 1;
        QTest::newRow("many") << 300 << 10 << 290;
    }

    void ofManyItemsTenAreWarnedAboutOneByOneAndTheOthersTogether()
    {
        QFETCH(const int, due);
        QFETCH(const int, single);
        QFETCH(const int, together);
        CleanupWorld world;
        for (int number = 0; number < due; ++number) {
            world.add(world.home.makeFile(QString::number(number)), 4);
        }
        const QList<LapsaItem> items = world.store().items();

        world.service->tick();

        Warnings oneByOne;
        for (const LapsaItem& item : items.first(single)) {
            oneByOne.push_back({item.id, 5});
        }
        QCOMPARE(world.warnings.sent, oneByOne);
        QCOMPARE(world.warnings.joint.size(), together == 0 ? 0 : 1);
        if (together > 0) {
            QCOMPARE(world.warnings.joint[0].first, items.last(together));
            QCOMPARE(world.warnings.joint[0].second, 5);
        }
        QVERIFY(std::ranges::all_of(world.store().items(), &LapsaItem::fiveMinuteWarningSent));
        world.service->tick();
        QCOMPARE(world.warnings.sent.size(), single);
        QCOMPARE(world.warnings.joint.size(), together == 0 ? 0 : 1);
    }
};

QTEST_GUILESS_MAIN(CleanupService_warnings_test)

#include "CleanupService_warnings_test.moc"
