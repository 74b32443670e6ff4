// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ComingsAndGoings.h"
#include "LogCapture.h"
#include "ProcessFigures.h"

#include <QElapsedTimer>
#include <QTest>

#include <algorithm>

using namespace lapsa;
using namespace Qt::StringLiterals;

namespace {

constexpr int minutesADay = 24 * 60;

constexpr qint64 bytesOf(double megabytes)
{
    return static_cast<qint64>(megabytes * 1024 * 1024);
}

/// How many days to live; the first ones bring every buffer to its size.
int days()
{
    const int wanted = qEnvironmentVariableIntValue("LAPSA_SOAK_DAYS");
    return wanted > 0 ? wanted : 3;
}

int warmUpDays()
{
    return std::max(1, std::min(days() / 3, 7));
}

} // namespace

/// Many days of real passes over real files, on a clock turned by hand.
class LongRun_test final : public QObject
{
    Q_OBJECT

private slots:

    void daysOfPassesLeakNothingAndLoseNoFile()
    {
        const test::LogCapture log;
        test::ComingsAndGoings user;
        QElapsedTimer timer;
        timer.start();
        test::ProcessFigures warm;
        test::ProcessFigures last;
        for (int day = 1; day <= days(); ++day) {
            user.liveOneDay();
            QCOMPARE(user.faults().join(u'\n'), QString());
            user.emptyTrash();
            requireBoundedFiles(user);
            last = test::ProcessFigures::now();
            if (day == warmUpDays()) {
                warm = last;
            }
            if (day >= warmUpDays()) {
                QCOMPARE(last.descriptors, warm.descriptors);
            }
            m_largest = std::max(m_largest, last.residentBytes);
        }

        tell(user, warm, last, timer.elapsed());
        QCOMPARE(log.lines(), QStringList());
        if (test::ProcessFigures::memoryTells) {
            QVERIFY(last.allocatedBytes - warm.allocatedBytes <= bytesOf(0.5));
            QVERIFY(last.residentBytes - warm.residentBytes <= bytesOf(0.5));
        }
    }

private:
    /// A record takes some 400 bytes; the lists hold what is there and nothing of the past.
    static void requireBoundedFiles(test::ComingsAndGoings& user)
    {
        constexpr qsizetype mostItems = 1200;
        constexpr qsizetype mostRecords = 800;
        constexpr qsizetype bytesEach = 1024;
        test::StoreWorld& world = user.world();
        QVERIFY2(world.store().items().size() <= mostItems, qPrintable(QString::number(world.store().items().size())));
        QVERIFY2(world.store().recoveryItems().size() <= mostRecords,
                 qPrintable(QString::number(world.store().recoveryItems().size())));
        QVERIFY(world.home.dataFile(u"state.json"_s).size() <= world.store().items().size() * bytesEach);
        QVERIFY(world.home.dataFile(u"recovery.json"_s).size() <=
                (world.store().recoveryItems().size() + 1) * bytesEach);
        QVERIFY(world.home.dataFile(u"settings.json"_s).size() <= 10 * bytesEach);
    }

    void tell(test::ComingsAndGoings& user, const test::ProcessFigures& warm, const test::ProcessFigures& last,
              qint64 milliseconds) const
    {
        test::StoreWorld& world = user.world();
        qInfo("%d days, %d passes, %d files, %lld s", days(), days() * minutesADay, user.files(), milliseconds / 1000);
        qInfo("allocated: %lld KB after %d days, %lld KB at the end", warm.allocatedBytes / 1024, warmUpDays(),
              last.allocatedBytes / 1024);
        qInfo("resident: %lld KB after %d days, %lld KB at the end, %lld KB at most", warm.residentBytes / 1024,
              warmUpDays(), last.residentBytes / 1024, m_largest / 1024);
        qInfo("descriptors: %lld after %d days, %lld at the end", warm.descriptors, warmUpDays(), last.descriptors);
        qInfo("at the end: %lld items in %lld bytes, %lld records in %lld bytes", world.store().items().size(),
              world.home.dataFile(u"state.json"_s).size(), world.store().recoveryItems().size(),
              world.home.dataFile(u"recovery.json"_s).size());
    }

    qint64 m_largest = 0;
};

QTEST_GUILESS_MAIN(LongRun_test)
#include "LongRun_test.moc"
