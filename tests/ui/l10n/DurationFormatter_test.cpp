// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DurationFormatter.h"

#include <QTest>

using namespace lapsa;
using namespace Qt::StringLiterals;

class DurationFormatter_test final : public QObject
{
    Q_OBJECT

private slots:

    void aDurationIsWrittenInItsParts_data()
    {
        QTest::addColumn<qint64>("minutes");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");

        const auto row = [](qint64 minutes, const QString& english, const QString& italian) {
            QTest::addRow("%lld minutes", static_cast<long long>(minutes)) << minutes << english << italian;
        };
        row(1, u"1min"_s, u"1min"_s);
        row(59, u"59min"_s, u"59min"_s);
        row(60, u"1h"_s, u"1h"_s);
        row(61, u"1h 1min"_s, u"1h 1min"_s);
        row(90, u"1h 30min"_s, u"1h 30min"_s);
        row(1440, u"1d"_s, u"1g"_s);
        row(1441, u"1d 1min"_s, u"1g 1min"_s);
        row(1445, u"1d 5min"_s, u"1g 5min"_s);
        row(1500, u"1d 1h"_s, u"1g 1h"_s);
        row(3065, u"2d 3h 5min"_s, u"2g 3h 5min"_s);
        row(10080, u"7d"_s, u"7g"_s);
        row(525600, u"365d"_s, u"365g"_s);
        row(1440 * 12345, u"12345d"_s, u"12345g"_s);
        row(0, u"1min"_s, u"1min"_s);
        row(-5, u"1min"_s, u"1min"_s);
    }

    void aDurationIsWrittenInItsParts()
    {
        QFETCH(qint64, minutes);

        qputenv("LC_ALL", "en_GB.UTF-8");
        QTEST(DurationFormatter::compact(minutes), "english");
        qputenv("LC_ALL", "it_IT.UTF-8");
        QTEST(DurationFormatter::compact(minutes), "italian");
    }
};

QTEST_GUILESS_MAIN(DurationFormatter_test)

#include "DurationFormatter_test.moc"
