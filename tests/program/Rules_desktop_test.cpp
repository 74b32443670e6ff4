// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Settling.h"
#include "StackedWindows.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

// Seen from the window's top left corner.
constexpr QPoint rulesTab(312, 34);
constexpr QPoint fieldOfFirstCard(300, 166);
constexpr QPoint groundOfFirstCard(400, 225);
constexpr QPoint pastMiddleOfSecondCard(400, 350);

const QString archives = u".zip,.rar,.7z"_s;
const QString programs = u".exe,.msi,.pkg,.dmg"_s;

std::optional<ManagedWindow> preferences()
{
    return windowTitled(u"Preferences"_s);
}

QPoint onScreen(const QPoint& point)
{
    return preferences()->inner.topLeft() + point;
}

/// The mouse takes the first card's ground with it, step by step, to below the second card; the button stays pressed.
void dragFirstCardDown()
{
    constexpr int steps = 10;
    QStringList commands;
    for (int step = 0; step <= steps; ++step) {
        const QPoint point =
            onScreen(groundOfFirstCard + (pastMiddleOfSecondCard - groundOfFirstCard) * step / double(steps));
        commands << u"mousemove"_s << QString::number(point.x()) << QString::number(point.y());
        if (step == 0) {
            commands << u"mousedown"_s << u"1"_s;
        }
        commands << u"sleep"_s << u"0.02"_s;
    }
    std::ignore = outputOf(u"xdotool"_s, commands); // it writes nothing
}

void release()
{
    std::ignore = outputOf(u"xdotool"_s, {u"mouseup"_s, u"1"_s});
}

} // namespace

/// The order of the rules, by keys and by mouse, in the whole program on a real X server with a window manager.
class RulesDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_desktop.emplace();
        m_lapsa.emplace();
        QVERIFY(succeeds([] {
            std::ignore =
                outputOf(u"gapplication"_s, {u"action"_s, u"org.lapsa.Lapsa"_s, u"preferences"_s}); // it writes nothing
            return preferences().has_value();
        }));
        // The splash would get the clicks.
        QVERIFY(comesTrue([] { return VirtualDisplay::windowsOfClass(u"lapsa"_s).size() == 1; }));
        VirtualDisplay::click(onScreen(rulesTab));
    }

    void cleanup()
    {
        m_lapsa.reset();
        m_desktop.reset();
    }

    void keysMoveARule()
    {
        QVERIFY(succeeds([this] {
            if (firstRule() != programs) {
                VirtualDisplay::click(onScreen(fieldOfFirstCard));
                VirtualDisplay::press(u"alt+Down"_s);
                constexpr int saving = 1000;
                std::ignore = QTest::qWaitFor([this] { return firstRule() == programs; }, saving);
            }
            return firstRule() == programs;
        }));

        VirtualDisplay::press(u"alt+Up"_s);

        QVERIFY(succeeds([this] { return firstRule() == archives; }));
    }

    void theMouseMovesARule()
    {
        dragFirstCardDown();
        release();

        QVERIFY(succeeds([this] { return firstRule() == programs; }));
    }

    void escapeEndsADragAndNotTheWindow()
    {
        dragFirstCardDown();
        QVERIFY(succeeds([this] { return firstRule() == programs; }));

        VirtualDisplay::press(u"Escape"_s);

        QVERIFY(succeeds([this] { return firstRule() == archives; }));
        release();
        QVERIFY(preferences());
        VirtualDisplay::press(u"Escape"_s);
        QVERIFY(comesTrue([] { return !preferences(); }));
        QCOMPARE(firstRule(), archives);
    }

private:
    /// The extensions of the first rule on the disk.
    [[nodiscard]] QString firstRule() const
    {
        const QJsonDocument settings = QJsonDocument::fromJson(m_desktop->home().dataFile(u"settings.json"_s));
        return settings[u"fileTypeRules"_s][0][u"extensionsCSV"_s].toString();
    }

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::RulesDesktopTest)
#include "Rules_desktop_test.moc"
