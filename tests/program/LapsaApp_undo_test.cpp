// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "Settling.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QFile>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

/// The panel in the top right corner of the screen.
constexpr QRect panelPlace(850, 0, 430, 560);
/// From the corner of the panel to the middle of the first row's "Delete now".
constexpr QPoint deleteOfFirstRow(379, 299);
/// The same for the link beside the message.
constexpr QPoint link(381, 247);

std::optional<QRect> shownWindow()
{
    return VirtualDisplay::windowOfClass(u"lapsa"_s);
}

} // namespace

/// "Delete now" and what brings the file back, with a real mouse and keyboard.
class LapsaAppUndoTest final : public QObject
{
    Q_OBJECT

private slots:

    void whatWasDeletedComesBack_data()
    {
        QTest::addColumn<bool>("byKeyboard");

        QTest::newRow("by a click on the link") << false;
        QTest::newRow("by Control+Z") << true;
    }

    void whatWasDeletedComesBack()
    {
        QFETCH(const bool, byKeyboard);
        const TemporaryHome home;
        const SessionBus bus;
        const VirtualDisplay display;
        const QString file = home.makeFile(u"report.zip"_s, "the report");
        LapsaProcess lapsa({file});
        QVERIFY(succeeds([&] { return storedPaths(home) == QStringList{file}; }));
        QVERIFY(comesTrue([] { return !shownWindow(); }));
        QCOMPARE(LapsaProcess().exitCode(), 0);
        QCOMPARE(settled(&shownWindow, std::optional(panelPlace)), std::optional(panelPlace));

        VirtualDisplay::click(panelPlace.topLeft() + deleteOfFirstRow);
        QVERIFY(succeeds([&] { return QFile::exists(home.dataPath(u"Recovery/report.zip"_s)); }));
        QVERIFY(!QFile::exists(file));
        QVERIFY(succeeds([&] {
            if (byKeyboard) {
                VirtualDisplay::press(u"ctrl+z"_s);
            } else {
                VirtualDisplay::click(panelPlace.topLeft() + link);
            }
            return QTest::qWaitFor([&] { return QFile::exists(file); }, 500);
        }));

        QVERIFY(succeeds([&] { return storedList(home, u"recovery.json"_s).isEmpty(); }));
        QVERIFY(succeeds([&] { return storedPaths(home).isEmpty(); }));
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppUndoTest)
#include "LapsaApp_undo_test.moc"
