// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "Settling.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;
/// In the middle of the 1280 x 1024 screen.
constexpr QRect splashPlace(390, 262, 500, 500);
/// In its top right corner.
constexpr QRect panelPlace(850, 0, 430, 560);

std::optional<QRect> shownWindow()
{
    return VirtualDisplay::windowOfClass(u"lapsa"_s);
}

} // namespace

/// What the program shows on a real X server.
class LapsaAppPanelTest final : public QObject
{
    Q_OBJECT

private slots:

    void theSplashGreetsAndGoesByItself()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;

        const LapsaProcess lapsa;

        QVERIFY(succeeds([] { return shownWindow() == splashPlace; }));
        QVERIFY(comesTrue([] { return !shownWindow(); }));
        QVERIFY(lapsa.running());
    }

    void aSecondStartWithoutFilesOpensThePanel()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        const LapsaProcess lapsa;
        QVERIFY(succeeds([] { return shownWindow() == splashPlace; }));
        QVERIFY(comesTrue([] { return !shownWindow(); }));

        LapsaProcess second;

        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(settled(&shownWindow, std::optional(panelPlace)), std::optional(panelPlace));
    }

    void openingFilesDoesNotOpenThePanel()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        const LapsaProcess lapsa;
        QVERIFY(succeeds([] { return shownWindow() == splashPlace; }));
        QVERIFY(comesTrue([] { return !shownWindow(); }));
        const QString file = home.makeFile(u"a.txt"_s);

        LapsaProcess second({file});

        QCOMPARE(second.exitCode(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(home), QStringList{file}, patience);
        QCOMPARE(shownWindow(), std::optional<QRect>());
    }

    void anEarlyEndTakesTheSplashAlong()
    {
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        LapsaProcess lapsa;
        QVERIFY(succeeds([] { return shownWindow() == splashPlace; }));

        QCOMPARE(lapsa.terminate(), 0);

        QCOMPARE(shownWindow(), std::optional<QRect>());
        QCOMPARE(lapsa.standardError(), QByteArray());
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppPanelTest)
#include "LapsaApp_panel_test.moc"
