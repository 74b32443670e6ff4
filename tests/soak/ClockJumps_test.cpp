// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CleanupService.h"
#include "LogCapture.h"
#include "StoreWorld.h"

#include <QFile>
#include <QTest>

#include <algorithm>
#include <optional>
#include <random>
#include <tuple>

using namespace lapsa;
using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

constexpr std::chrono::years century{100};

/// The store with the service that drives it, a copy in Recovery, and three items: one short, one long, one locked.
struct World final : test::StoreWorld
{
    test::RecordingWarnings warnings;
    std::optional<CleanupService> service;
    LapsaRecoveryItem copy;
    LapsaItem shortItem;
    LapsaItem longItem;
    LapsaItem lockedItem;

    World()
    {
        startService();
        store().deleteNow(add(home.makeFile(u"copy.txt"_s)));
        copy = store().recoveryItems().constLast();
        longItem = add(home.makeFile(u"long.txt"_s), maxLifespanMinutes);
        lockedItem = add(home.makeFile(u"locked.txt"_s), 1);
        store().lockItem(lockedItem.id);
        shortItem = add(home.makeFile(u"short.txt"_s), 30);
        letSavesPass();
    }

    void startService()
    {
        service.emplace(store(), warnings, CleanupService::Environment{.clock = time, .mainQueue = time});
        service->start();
    }

    void startAgain()
    {
        letSavesPass();
        service.reset();
        start();
        startService();
    }

    /// The pass after the clock was set: within a minute of the queue's time.
    void nextPass() { time.advance(1min); }

    [[nodiscard]] std::optional<LapsaRecoveryItem> recordOf(const LapsaItem& item)
    {
        const auto& records = store().recoveryItems();
        const auto found = std::ranges::find(records, item.path, &LapsaRecoveryItem::originalPath);
        return found != records.cend() ? std::optional(*found) : std::nullopt;
    }

    [[nodiscard]] bool listed(const LapsaItem& item) { return store().items().contains(item); }
};

} // namespace

Q_DECLARE_METATYPE(lapsa::TimePoint)

/// Clocks that are set, machines that sleep: what is due follows the date, and whatever was parked has its time.
class ClockJumps_test final : public QObject
{
    Q_OBJECT

private slots:

    void whatAJumpAheadMakesDueIsParkedForItsFullRetention_data()
    {
        QTest::addColumn<TimePoint>("clock");

        const TimePoint start = test::ManualTime().now();
        QTest::newRow("two years") << start + std::chrono::years{2};
        QTest::newRow("the last second of 32-bit clocks") << TimePoint(std::chrono::seconds{2147483647});
        QTest::newRow("the last day of the system's clock") << TimePoint(std::chrono::seconds{8277292036});
        QTest::newRow("the last date that can be written") << distantFuture;
        QTest::newRow("beyond what can be written") << distantFuture + 20 * century;
        QTest::newRow("three days before the end of time") << TimePoint::max() - 72h;
    }

    void whatAJumpAheadMakesDueIsParkedForItsFullRetention()
    {
        QFETCH(const TimePoint, clock);
        const test::LogCapture log;
        World world;

        world.time.setClock(clock);
        world.nextPass();

        QVERIFY(!QFile::exists(world.copy.recoveryPath));
        QVERIFY(world.lockedItem.exists());
        QCOMPARE(world.listedNames(), QStringList{u"locked.txt"_s});
        QCOMPARE(world.warnings.sent.size(), 0);
        const auto parked = world.recordOf(world.shortItem);
        QVERIFY(parked && QFile::exists(parked->recoveryPath));
        QVERIFY(world.recordOf(world.longItem));
        world.time.advance(parked->purgeAfter - world.time.now() - 1us);
        QVERIFY(world.time.now() - parked->deletedAt >= 24h - 1us);
        QVERIFY(QFile::exists(parked->recoveryPath));
        world.nextPass();
        QVERIFY(!QFile::exists(parked->recoveryPath));
        QCOMPARE(log.lines(), QStringList());
    }

    void aJumpBackDisposesOfNothing_data()
    {
        QTest::addColumn<TimePoint>("clock");

        const TimePoint start = test::ManualTime().now();
        QTest::newRow("an hour") << start - 1h;
        QTest::newRow("twenty years") << start - std::chrono::years{20};
        QTest::newRow("the first second of the system's clock") << TimePoint();
        QTest::newRow("the first date that can be written") << distantPast;
        QTest::newRow("before what can be written") << distantPast - 20 * century;
        QTest::newRow("the beginning of time") << TimePoint::min();
    }

    void aJumpBackDisposesOfNothing()
    {
        QFETCH(const TimePoint, clock);
        const test::LogCapture log;
        World world;

        world.time.setClock(clock);
        world.time.advance(30min);
        world.startAgain();
        world.time.advance(30min);

        QVERIFY(QFile::exists(world.copy.recoveryPath));
        QCOMPARE(world.listedNames(), QStringList({u"long.txt"_s, u"locked.txt"_s, u"short.txt"_s}));
        QVERIFY(world.shortItem.exists() && world.longItem.exists() && world.lockedItem.exists());
        QCOMPARE(world.warnings.sent.size(), 0);
        QCOMPARE(log.lines(), QStringList());
    }

    void anItemAddedWhileTheClockIsWrongHasItsCountdownAndItsRetention_data() { aJumpBackDisposesOfNothing_data(); }

    void anItemAddedWhileTheClockIsWrongHasItsCountdownAndItsRetention()
    {
        QFETCH(const TimePoint, clock);
        World world;
        world.time.setClock(clock);

        const LapsaItem item = world.add(world.home.makeFile(u"new.txt"_s), 10);
        world.time.advance(10min - 1us);
        QVERIFY(item.exists());
        world.nextPass();

        QVERIFY(!item.exists());
        const auto parked = world.recordOf(item);
        QVERIFY(parked);
        world.time.advance(parked->purgeAfter - world.time.now() - 1us);
        QVERIFY(world.time.now() - parked->deletedAt >= 24h - 1us);
        QVERIFY(QFile::exists(parked->recoveryPath));
        world.nextPass();
        QVERIFY(!QFile::exists(parked->recoveryPath));
    }

    void theRetentionAfterAJumpOutlivesTheProcess()
    {
        World world;
        world.time.setClock(world.time.now() + 2 * century);
        world.nextPass();
        const auto parked = world.recordOf(world.shortItem);
        QVERIFY(parked);

        world.time.advance(23h);
        world.startAgain();
        QVERIFY(QFile::exists(parked->recoveryPath));
        world.time.advance(2h);

        QVERIFY(!QFile::exists(parked->recoveryPath));
    }

    void whatFallsDueWhileTheMachineSleepsIsParkedFromTheFirstPassAfterIt()
    {
        World world;

        // The queue's time stands still.
        world.time.setClock(world.time.now() + 8h);
        world.time.settle();
        QVERIFY(world.listed(world.shortItem));
        world.nextPass();

        const auto parked = world.recordOf(world.shortItem);
        QVERIFY(parked);
        QVERIFY(world.time.now() - parked->deletedAt < 1min);
        QCOMPARE(parked->purgeAfter - parked->deletedAt, std::chrono::microseconds(24h));
        QVERIFY(QFile::exists(world.copy.recoveryPath)); // parked eight hours ago
        QVERIFY(world.listed(world.longItem));
        QCOMPARE(world.warnings.sent.size(), 0); // too late for a warning
    }

    void aSaveThatWaitsWhileTheMachineSleepsIsWrittenAfterIt()
    {
        World world;
        const LapsaItem item = world.add(world.home.makeFile(u"new.txt"_s), maxLifespanMinutes);

        world.time.setClock(world.time.now() + 8h);
        world.letSavesPass();

        QVERIFY(world.home.dataFile(u"state.json"_s).contains(item.id.toUtf8()));
    }

    void aClockThatLeapsToAndFroLosesNoFileBeforeItsTime()
    {
        constexpr int leaps = 500;
        World world;
        std::mt19937_64 generator(1);
        for (int i = 0; i < leaps; ++i) {
            const std::chrono::seconds when(std::int64_t(generator() % 8'000'000'000));
            world.time.setClock(TimePoint(when));
            const LapsaItem item = world.add(world.home.makeFile(u"%1.txt"_s.arg(i)), 1);
            const QList<LapsaRecoveryItem> before = world.store().recoveryItems();
            const QList<LapsaItem> items = world.store().items();

            world.time.advance(2min);

            for (const LapsaItem& was : items) {
                QVERIFY(world.listed(was) ? was.exists() : world.recordOf(was).has_value());
            }
            QVERIFY(!world.listed(item));
            for (const LapsaRecoveryItem& record : before) {
                const bool kept = world.store().recoveryItems().contains(record);
                QCOMPARE(QFile::exists(record.recoveryPath), kept);
                QVERIFY(kept || record.purgeAfter <= world.time.now());
            }
        }
        QVERIFY(world.lockedItem.exists());
    }
};

QTEST_GUILESS_MAIN(ClockJumps_test)
#include "ClockJumps_test.moc"
