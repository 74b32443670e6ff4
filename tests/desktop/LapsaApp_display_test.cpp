// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

} // namespace

/// The program on a real X server.
class LapsaAppDisplayTest final : public QObject
{
    Q_OBJECT

private slots:

    void whenTheDisplayGoesAwayNothingIsLost()
    {
        const TemporaryHome home;
        const SessionBus bus;
        VirtualDisplay display;
        const QString file = home.makeFile(u"late.txt"_s);
        LapsaProcess lapsa;
        QTRY_VERIFY_WITH_TIMEOUT(bus.hasOwner(u"org.lapsa.Lapsa"_s), patience);
        LapsaProcess second({file});
        QCOMPARE(second.exitCode(), 0);

        display.crash();

        QVERIFY(lapsa.exitCode() >= 0);
        QCOMPARE(storedPaths(home), QStringList{file});
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void onADisplayStandardErrorStaysEmpty()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        LapsaProcess lapsa({home.makeFile(u"a.txt"_s)});
        QTRY_VERIFY_WITH_TIMEOUT(!storedPaths(home).isEmpty(), patience);

        QCOMPARE(lapsa.terminate(), 0);

        QCOMPARE(lapsa.standardError(), QByteArray());
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppDisplayTest)
#include "LapsaApp_display_test.moc"
