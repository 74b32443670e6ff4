// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "JSONEncoder.h"
#include "LapsaItem.h"
#include "LapsaProcess.h"
#include "SessionBus.h"
#include "SystemClock.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WaylandSession.h"

#include <QFile>
#include <QTest>

#include <chrono>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 40'000;

enum class Session
{
    X11,
    X11WithoutBus,
    Wayland,
    WaylandWithXWayland,
    WaylandWithoutBus,
};

/// What stands around the program in a session of that kind: never a tray, a window manager or a notification daemon.
class SessionWorld final
{
public:
    explicit SessionWorld(Session session)
    {
        if (session == Session::X11WithoutBus || session == Session::WaylandWithoutBus) {
            m_noBus.emplace();
        } else {
            m_bus.emplace();
        }
        if (session == Session::X11 || session == Session::X11WithoutBus) {
            m_display.emplace();
        } else {
            // A plugin of the toolkit keeps 128 bytes and is unloaded at the end: with its name gone, a leak checker
            // cannot be told that they are not ours.
            qputenv("LSAN_OPTIONS", "detect_leaks=0");
            m_wayland.emplace(session == Session::WaylandWithXWayland ? WaylandSession::XWayland::With
                                                                      : WaylandSession::XWayland::Without);
        }
    }

    SessionWorld(const SessionWorld&) = delete;
    SessionWorld& operator=(const SessionWorld&) = delete;

    ~SessionWorld() { qputenv("LSAN_OPTIONS", m_leakOptions); }

    [[nodiscard]] bool hasBus() const { return m_bus.has_value(); }

    TemporaryHome home;

private:
    QByteArray m_leakOptions = qgetenv("LSAN_OPTIONS");
    std::optional<SessionBus> m_bus;
    std::optional<NoSessionBus> m_noBus;
    std::optional<VirtualDisplay> m_display;
    std::optional<WaylandSession> m_wayland;
};

/// Whether the process has loaded the toolkit's plugin of that platform.
bool usesPlatform(const LapsaProcess& lapsa, const QByteArray& plugin)
{
    QFile maps(u"/proc/%1/maps"_s.arg(lapsa.pid()));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(plugin);
}

void addSessions()
{
    QTest::addColumn<Session>("session");
    QTest::newRow("X11 without a window manager") << Session::X11;
    QTest::newRow("X11 without a session bus") << Session::X11WithoutBus;
    QTest::newRow("Wayland") << Session::Wayland;
    QTest::newRow("Wayland with XWayland") << Session::WaylandWithXWayland;
    QTest::newRow("Wayland without a session bus") << Session::WaylandWithoutBus;
}

} // namespace

} // namespace lapsa::test

Q_DECLARE_METATYPE(lapsa::test::Session)

namespace lapsa::test {

/// The program in each kind of session, down to those in which next to nothing is there.
class SessionsDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void itDoesItsWorkAndEndsWithoutAWord_data() { addSessions(); }

    void itDoesItsWorkAndEndsWithoutAWord()
    {
        QFETCH(const Session, session);
        const SessionWorld world(session);
        const QString expired = world.home.makeFile(u"expired.txt"_s);
        const QString added = world.home.makeFile(u"added.txt"_s);
        LapsaItem item;
        item.id = u"1"_s;
        item.path = expired;
        item.displayName = u"expired.txt"_s;
        item.addedAt = SystemClock().now() - std::chrono::hours(2);
        item.expiresAt = SystemClock().now() - std::chrono::hours(1);
        world.home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(QList{item}));

        LapsaProcess lapsa({added});

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(world.home), QStringList{added}, patience);
        QVERIFY(QFile::exists(world.home.dataPath(u"Recovery/expired.txt"_s)));
        QVERIFY(!QFile::exists(expired));
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void anotherStartOpensThePanelWithoutHarm_data() { addSessions(); }

    void anotherStartOpensThePanelWithoutHarm()
    {
        QFETCH(const Session, session);
        const SessionWorld world(session);
        if (!world.hasBus()) {
            QSKIP("without a bus another start cannot reach the first");
        }
        const QString added = world.home.makeFile(u"added.txt"_s);
        LapsaProcess lapsa({added});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(world.home), QStringList{added}, patience);

        LapsaProcess second;

        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void onWaylandItUsesXWaylandWhereThereIsOne()
    {
        const SessionWorld world(Session::WaylandWithXWayland);

        const LapsaProcess lapsa;

        QTRY_VERIFY_WITH_TIMEOUT(usesPlatform(lapsa, "libqxcb"), patience);
        QVERIFY(!usesPlatform(lapsa, "libqwayland"));
    }

    void onWaylandAloneItIsAWaylandProgram()
    {
        const SessionWorld world(Session::Wayland);

        const LapsaProcess lapsa;

        QTRY_VERIFY_WITH_TIMEOUT(usesPlatform(lapsa, "libqwayland"), patience);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::SessionsDesktopTest)

#include "Sessions_desktop_test.moc"
