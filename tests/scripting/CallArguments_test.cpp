// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CallArguments.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The bounds themselves; what other programs hear of them is in Lapsa1_hostile_test.
class CallArgumentsTest final : public QObject
{
    Q_OBJECT

private slots:

    void pathsAreStandardised()
    {
        QCOMPARE(pathsOfUris({u"file:///home//ada/./x/../a%20b"_s, u"file://localhost/a"_s}),
                 QStringList({u"/home/ada/a b"_s, u"/a"_s}));
    }

    void theBoundsAreInside()
    {
        const QString uri = u"file:///a"_s;

        QVERIFY(pathsOfUris(QStringList(10'000, uri)));
        QVERIFY(!pathsOfUris(QStringList(10'001, uri)));
        QVERIFY(pathsOfUris({uri + QString(16'384 - uri.size(), u'a')}));
        QVERIFY(!pathsOfUris({uri + QString(16'385 - uri.size(), u'a')}));
        QVERIFY(areMinutes(0));
        QVERIFY(areMinutes(525'600));
        QVERIFY(!areMinutes(525'601));
        QVERIFY(!areMinutes(-1));
        QVERIFY(!areMinutes(std::numeric_limits<int>::min()));
    }

    void idsAreReadInBothWritings()
    {
        const auto id = QUuid::fromString(u"A4C3F5B0-54D5-4D3C-93F2-4C8E6A1C1B11"_s);

        QCOMPARE(recordIds({u"a4c3f5b0-54d5-4d3c-93f2-4c8e6a1c1b11"_s}), QList<QUuid>{id});
        QVERIFY(!recordIds({id.toString(), id.toString(QUuid::WithoutBraces)}));
        QVERIFY(!recordIds({u"00000000-0000-0000-0000-000000000000"_s}));
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::CallArgumentsTest)
#include "CallArguments_test.moc"
