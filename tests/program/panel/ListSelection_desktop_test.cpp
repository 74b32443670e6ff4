// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Settling.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <functional>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

enum Row
{
    First,
    Second,
    Third,
};

/// Above the row's buttons, seen from the panel's top left corner.
QPoint placeOf(Row row)
{
    constexpr QPoint first(150, 304);
    constexpr QPoint oneDown(0, 68);
    return DesktopSession::lapsaPanel().value_or(QRect()).topLeft() + first + oneDown * int(row);
}

void clickHolding(const QString& key, Row row)
{
    std::ignore = outputOf(u"xdotool"_s, {u"keydown"_s, key}); // it writes nothing
    VirtualDisplay::click(placeOf(row));
    std::ignore = outputOf(u"xdotool"_s, {u"keyup"_s, key});
}

void press(const QString& keys, int times)
{
    for (int time = 0; time < times; ++time) {
        VirtualDisplay::press(keys);
    }
}

} // namespace

/// Several rows of the panel in hand at once, by mouse and by keys, in the whole program on a real X server with a
/// window manager: what the context menu then does reaches the disk.
class ListSelectionDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_desktop.emplace();
        m_files = {home().makeFile(u"alpha.txt"_s), home().makeFile(u"beta.txt"_s), home().makeFile(u"beta.pdf"_s)};
        m_lapsa.emplace(m_files);
        QVERIFY(succeeds([this] { return storedPaths(home()).size() == 3; }));
        LapsaProcess second;
        QCOMPARE(second.exitCode(), 0);
        // The splash would get the clicks.
        QVERIFY(comesTrue([] { return VirtualDisplay::windowsOfClass(u"lapsa"_s).size() == 1; }));
        QVERIFY(comesTrue(&DesktopSession::lapsaPanel));
    }

    void cleanup()
    {
        m_lapsa.reset();
        m_desktop.reset();
    }

    void controlClicksSelectRowByRow()
    {
        QVERIFY(menuDoes(
            [] {
                VirtualDisplay::click(placeOf(First));
                clickHolding(u"ctrl"_s, First);
                clickHolding(u"ctrl"_s, Third);
                VirtualDisplay::click(placeOf(Third), VirtualDisplay::Button::Right);
            },
            2,
            [this] {
                return lockedNames() == QStringList({u"alpha.txt"_s, u"beta.pdf"_s});
            }));
    }

    void aShiftClickSelectsAllBetween()
    {
        QVERIFY(menuDoes(
            [] {
                VirtualDisplay::click(placeOf(First));
                clickHolding(u"shift"_s, Third);
                VirtualDisplay::click(placeOf(Second), VirtualDisplay::Button::Right);
            },
            3, [this] { return storedPaths(home()).isEmpty(); }));
        for (const QString& file : std::as_const(m_files)) {
            QVERIFY(QFile::exists(file));
        }
    }

    void keysSelectAllAndGiveThemAnotherTime()
    {
        const auto dueInAWeek = [this] {
            const QDateTime soonest = QDateTime::currentDateTimeUtc().addDays(6);
            const QJsonArray items = storedList(home(), u"state.json"_s);
            return items.size() == 3 && std::ranges::all_of(items, [&soonest](const QJsonValue& item) {
                       return QDateTime::fromString(item[u"expiresAt"_s].toString(), Qt::ISODate) > soonest;
                   });
        };
        QVERIFY(menuDoes(
            [] {
                VirtualDisplay::press(u"Down"_s);
                VirtualDisplay::press(u"ctrl+a"_s);
                VirtualDisplay::press(u"Menu"_s);
            },
            1,
            [&dueInAWeek] {
                // From the days past hours, minutes, 10m, 2h and 1d to 7d; from there past "Cancel" to "Save".
                press(u"Tab"_s, 6);
                VirtualDisplay::press(u"space"_s);
                press(u"Tab"_s, 2);
                VirtualDisplay::press(u"Return"_s);
                constexpr int saving = 1000;
                std::ignore = QTest::qWaitFor(dueInAWeek, saving);
                return dueInAWeek();
            }));
    }

    void typingFiltersAndSelectAllTakesWhatIsShown()
    {
        QVERIFY(menuDoes(
            [] {
                press(u"Escape"_s, 2);
                VirtualDisplay::press(u"b"_s);
                VirtualDisplay::press(u"e"_s);
                VirtualDisplay::press(u"Down"_s);
                VirtualDisplay::press(u"ctrl+a"_s);
                VirtualDisplay::press(u"Menu"_s);
            },
            2,
            [this] {
                return lockedNames() == QStringList({u"beta.pdf"_s, u"beta.txt"_s});
            }));
    }

private:
    [[nodiscard]] const TemporaryHome& home() const { return m_desktop->home(); }

    /// Opens the menu with `select`, chooses the entry with that number, and says whether `done` came to be true. Tried
    /// again, since the desktop may be busy with the window.
    [[nodiscard]] bool menuDoes(const std::function<void()>& select, int entry, const std::function<bool()>& done) const
    {
        return succeeds([&] {
            press(u"Escape"_s, 2); // the menu, the selection
            select();
            constexpr int opening = 1000;
            if (QTest::qWaitFor([this] { return m_desktop->menu().has_value(); }, opening)) {
                press(u"Down"_s, entry);
                VirtualDisplay::press(u"Return"_s);
                std::ignore = QTest::qWaitFor(done, opening);
            }
            return done();
        });
    }

    [[nodiscard]] QStringList lockedNames() const
    {
        QStringList names;
        for (const QJsonValue& item : storedList(home(), u"state.json"_s)) {
            if (item[u"locked"_s].toBool()) {
                names.push_back(QFileInfo(item[u"path"_s].toString()).fileName());
            }
        }
        names.sort();
        return names;
    }

    std::optional<DesktopSession> m_desktop;
    std::optional<LapsaProcess> m_lapsa;
    QStringList m_files;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::ListSelectionDesktopTest)
#include "ListSelection_desktop_test.moc"
