// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Time.h"

#include <QTest>

#include <limits>

using namespace lapsa;
using namespace std::chrono_literals;
using std::chrono::sys_days;
using std::chrono::year;

namespace {

constexpr TimePoint noon = sys_days{year{2026} / 3 / 1} + 12h;

} // namespace

class Time_test final : public QObject
{
    Q_OBJECT

private slots:

    void aTimeIsWrittenInUtcWithWholeSeconds_data()
    {
        QTest::addColumn<qint64>("microseconds");
        QTest::addColumn<QByteArray>("text");

        const auto row = [](const char* name, TimePoint time, const char* text) {
            QTest::newRow(name) << qint64{time.time_since_epoch().count()} << QByteArray(text);
        };
        row("an ordinary time", sys_days{year{2026} / 3 / 1} + 14h + 5min + 9s, "2026-03-01T14:05:09Z");
        row("a fraction is dropped", noon + 900ms, "2026-03-01T12:00:00Z");
        row("a fraction before 1970 is dropped towards the past", TimePoint{-1us}, "1969-12-31T23:59:59Z");
        row("the distant past", distantPast, "0001-01-01T00:00:00Z");
        row("the distant future", distantFuture, "9999-12-31T23:59:59Z");
        row("earlier than year 1 becomes year 1", distantPast - 1s, "0001-01-01T00:00:00Z");
        row("later than year 9999 becomes its end", TimePoint::max(), "9999-12-31T23:59:59Z");
        row("a leap day", sys_days{year{2028} / 2 / 29}, "2028-02-29T00:00:00Z");
    }

    void aTimeIsWrittenInUtcWithWholeSeconds()
    {
        QFETCH(qint64, microseconds);

        QTEST(iso8601Text(TimePoint{std::chrono::microseconds{microseconds}}), "text");
    }

    void whatIsWrittenIsReadBack()
    {
        for (TimePoint time = distantPast; time < distantFuture; time += 1000 * 24h + 7919s) {
            QCOMPARE(timePointFromIso8601(iso8601Text(time)), std::optional(time));
        }
    }

    void anOffsetIsTakenIntoAccount_data()
    {
        QTest::addColumn<QByteArray>("text");

        QTest::newRow("ahead of UTC") << QByteArray("2026-03-01T13:30:00+01:30");
        QTest::newRow("behind UTC") << QByteArray("2026-03-01T04:00:00-08:00");
        QTest::newRow("a zero offset") << QByteArray("2026-03-01T12:00:00+00:00");
    }

    void anOffsetIsTakenIntoAccount()
    {
        QFETCH(QByteArray, text);

        QCOMPARE(timePointFromIso8601(text), std::optional(noon));
    }

    void anOffsetLeadsToNoTimeThatCannotBeWritten()
    {
        QCOMPARE(timePointFromIso8601("0001-01-01T00:00:00+00:01"), std::optional(distantPast));
        QCOMPARE(timePointFromIso8601("9999-12-31T23:59:59-23:59"), std::optional(distantFuture));
    }

    void anyOtherFormIsRefused_data()
    {
        QTest::addColumn<QByteArray>("text");

        for (const char* text : {"",
                                 "2026-03-01",
                                 "2026-03-01T12:00:00",
                                 "2026-03-01T12:00:00.000Z",
                                 "2026-03-01T12:00Z",
                                 "2026-03-01 12:00:00Z",
                                 "2026-03-01t12:00:00z",
                                 "2026-3-1T12:00:00Z",
                                 "2026-02-29T12:00:00Z",
                                 "2026-13-01T12:00:00Z",
                                 "2026-03-01T24:00:00Z",
                                 "2026-03-01T12:60:00Z",
                                 "2026-03-01T12:00:60Z",
                                 "2026-03-01T12:00:00Z ",
                                 " 2026-03-01T12:00:00Z",
                                 "2026-03-01T12:00:00+0100",
                                 "2026-03-01T12:00:00+01",
                                 "2026-03-01T12:00:00+24:00",
                                 "2026-03-01T12:00:00+01:60",
                                 "2026-03-01T12:00:00ZZ",
                                 "+026-03-01T12:00:00Z",
                                 "20260301T120000Z",
                                 "0000-03-01T12:00:00Z",
                                 "10000-03-01T12:00:00Z",
                                 "1772366709"}) {
            QTest::newRow(*text == '\0' ? "an empty text" : text) << QByteArray(text);
        }
    }

    void anyOtherFormIsRefused()
    {
        QFETCH(QByteArray, text);

        QCOMPARE(timePointFromIso8601(text), std::nullopt);
    }

    void minutesAndHoursAreAddedInSeconds()
    {
        QCOMPARE(addingMinutes(noon, 90), noon + 90min);
        QCOMPARE(addingMinutes(noon, -1), noon - 1min);
        QCOMPARE(addingHours(noon, 24), noon + 24h);
    }

    void aSumThatNoTimePointHoldsBecomesTheFarthest()
    {
        constexpr std::int64_t mostMinutes = std::numeric_limits<std::int64_t>::max() / 60;

        QCOMPARE(addingMinutes(noon, mostMinutes), TimePoint::max());
        QCOMPARE(addingMinutes(noon, -mostMinutes), TimePoint::min());
    }

    void theSecondsBetweenTwoTimesHaveASignAndAFraction()
    {
        QCOMPARE(secondsBetween(noon, noon + 1500ms), 1.5);
        QCOMPARE(secondsBetween(noon + 1s, noon), -1.0);
        QVERIFY(secondsBetween(TimePoint::min(), TimePoint::max()) > 1e13);
    }
};

QTEST_GUILESS_MAIN(Time_test)

#include "Time_test.moc"
