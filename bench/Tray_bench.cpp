// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// Lapsa in the tray of a real panel beside other programs there: the start, the hot key, and what it costs to be there.
// Writes tables to standard output.

#include "DesktopSession.h"
#include "LapsaProcess.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include <sys/prctl.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <vector>

using namespace Qt::StringLiterals;

namespace lapsa::bench {

namespace {

constexpr int patience = 20'000;
constexpr int repetitions = 9;
constexpr unsigned long settling = 6000;

struct Candidate
{
    QString name;
    QString program;
    QStringList arguments;
};

/// Hears of every icon that is announced to the panel.
class Announcements final : public QObject
{
    Q_OBJECT

public:
    explicit Announcements(const QString& address)
        : m_bus(QDBusConnection::connectToBus(address, u"bench"_s))
    {
        m_bus.connect(u"org.kde.StatusNotifierWatcher"_s, u"/StatusNotifierWatcher"_s,
                      u"org.kde.StatusNotifierWatcher"_s, u"StatusNotifierItemRegistered"_s, this, SLOT(note(QString)));
    }

    [[nodiscard]] bool waitForOne()
    {
        QEventLoop loop;
        QTimer::singleShot(patience, &loop, &QEventLoop::quit);
        connect(this, &Announcements::announced, &loop, &QEventLoop::quit);
        m_announced = false;
        loop.exec();
        return m_announced;
    }

signals:
    void announced();

private slots:

    void note(const QString&)
    {
        m_announced = true;
        emit announced();
    }

private:
    QDBusConnection m_bus;
    bool m_announced = false;
};

class Running final
{
public:
    explicit Running(const Candidate& candidate)
    {
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.setStandardOutputFile(QProcess::nullDevice());
        m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
        m_process.start(candidate.program, candidate.arguments);
        m_process.waitForStarted(patience);
    }

    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    ~Running()
    {
        // Not every one of them ends when it is asked to.
        constexpr int politePatience = 500;
        m_process.terminate();
        if (!m_process.waitForFinished(politePatience)) {
            m_process.kill();
            m_process.waitForFinished(patience);
        }
    }

    [[nodiscard]] QString proc(const QString& file) const
    {
        return u"/proc/%1/%2"_s.arg(m_process.processId()).arg(file);
    }

private:
    QProcess m_process;
};

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The number in a line "NAME: NUMBER ..." of a file of /proc.
double numberIn(const QString& path, QByteArrayView name)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : file.readAll().split('\n')) {
        if (line.startsWith(name)) {
            return line.mid(name.size()).simplified().split(' ').constFirst().toDouble();
        }
    }
    return 0;
}

/// How often each thread of a process has gone to sleep so far: each wake-up ends in one.
QHash<QString, double> sleepsOf(const Running& running)
{
    QHash<QString, double> sleeps;
    for (const QString& thread : QDir(running.proc(u"task"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sleeps.insert(thread, numberIn(running.proc(u"task/"_s + thread + u"/status"_s), "voluntary_ctxt_switches:"));
    }
    return sleeps;
}

/// Of the threads that are there at the end; one that has ended meanwhile does not come again.
double wakeUpsBetween(const QHash<QString, double>& before, const QHash<QString, double>& after)
{
    double wakeUps = 0;
    for (auto thread = after.cbegin(); thread != after.cend(); ++thread) {
        wakeUps += thread.value() - before.value(thread.key());
    }
    return wakeUps;
}

struct Idle
{
    double pssInMegabytes;
    double wakeUpsAMinute;
};

Idle idleOf(const Candidate& candidate, Announcements& announcements, int seconds)
{
    const Running running(candidate);
    std::ignore = announcements.waitForOne();
    QThread::msleep(settling);
    const QHash<QString, double> before = sleepsOf(running);
    QThread::sleep(static_cast<unsigned long>(seconds));
    const double wakeUps = wakeUpsBetween(before, sleepsOf(running));
    constexpr double kibibytesInMegabyte = 1000.0 * 1000 / 1024;
    return {.pssInMegabytes = numberIn(running.proc(u"smaps_rollup"_s), "Pss:") / kibibytesInMegabyte,
            .wakeUpsAMinute = wakeUps * 60 / seconds};
}

double startToIcon(const Candidate& candidate, Announcements& announcements)
{
    std::vector<double> times;
    for (int i = 0; i < repetitions; ++i) {
        QElapsedTimer elapsed;
        elapsed.start();
        const Running running(candidate);
        if (!announcements.waitForOne()) {
            return -1;
        }
        times.push_back(double(elapsed.nsecsElapsed()) / 1e6);
    }
    return median(times);
}

/// Presses the hot key by the X server's hand and waits for the panel.
class HotKeyWatch final
{
public:
    HotKeyWatch()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
        , m_symbols(xcb_key_symbols_alloc(m_connection))
    {
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
    }

    HotKeyWatch(const HotKeyWatch&) = delete;
    HotKeyWatch& operator=(const HotKeyWatch&) = delete;

    ~HotKeyWatch()
    {
        xcb_key_symbols_free(m_symbols);
        xcb_disconnect(m_connection);
    }

    /// Milliseconds from the press to the window of the panel on the screen.
    double pressUntilPanel()
    {
        QElapsedTimer elapsed;
        elapsed.start();
        for (const xcb_keysym_t key : keys) {
            play(XCB_KEY_PRESS, key);
        }
        xcb_flush(m_connection);
        while (!panelCameUp()) {
        }
        const double milliseconds = double(elapsed.nsecsElapsed()) / 1e6;
        for (const xcb_keysym_t key : keys) {
            play(XCB_KEY_RELEASE, key);
        }
        xcb_flush(m_connection);
        return milliseconds;
    }

private:
    /// Super, Shift and y (keysymdef.h).
    static constexpr std::array<xcb_keysym_t, 3> keys{0xFFEB, 0xFFE1, 0x0079};

    void play(std::uint8_t type, xcb_keysym_t key)
    {
        const std::unique_ptr<xcb_keycode_t, decltype(&std::free)> codes(xcb_key_symbols_get_keycode(m_symbols, key),
                                                                         &std::free);
        xcb_test_fake_input(m_connection, type, *codes, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    }

    /// The next event of the server.
    bool panelCameUp()
    {
        const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> event(xcb_wait_for_event(m_connection),
                                                                               &std::free);
        if (!event) {
            qFatal("the X server is gone");
        }
        if ((event->response_type & 0x7F) != XCB_MAP_NOTIFY) {
            return false;
        }
        const auto window = reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window;
        const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&std::free)> place(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr), &std::free);
        constexpr int panelWidth = 430;
        constexpr int panelHeight = 560;
        return place && place->width == panelWidth && place->height == panelHeight;
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_key_symbols_t* m_symbols;
};

/// With no file manager in front, so that nothing but the panel is waited for.
void measureHotKey(test::DesktopSession& desktop, Announcements& announcements)
{
    std::vector<double> first;
    std::vector<double> again;
    for (int i = 0; i < repetitions; ++i) {
        const Running lapsa({u"Lapsa"_s, test::LapsaProcess::program(), {}});
        std::ignore = announcements.waitForOne();
        constexpr unsigned long splash = 2500;
        QThread::msleep(splash);
        HotKeyWatch watch;
        first.push_back(watch.pressUntilPanel());
        test::VirtualDisplay::click(desktop.trayIcon()->center()); // closes it
        QThread::msleep(splash);
        again.push_back(watch.pressUntilPanel());
    }
    std::printf("\n| hot key to panel | ms |\n|---|--:|\n| first time | %.1f |\n| again | %.1f |\n", median(first),
                median(again));
}

int run(const QStringList& arguments)
{
    const int seconds = arguments.contains(u"--small"_s) ? 10 : 60;
    test::DesktopSession desktop;
    desktop.startXfcePanel();
    Announcements announcements(desktop.bus().address());
    std::vector<Candidate> candidates{
        {u"Lapsa"_s, test::LapsaProcess::program(), {}},
        {u"a program that only shows an icon"_s, QCoreApplication::applicationDirPath() + u"/lapsa_icon_only"_s, {}}};
    for (const auto& [name, program] : {std::pair(u"CopyQ"_s, u"copyq"_s), std::pair(u"Flameshot"_s, u"flameshot"_s)}) {
        if (!QStandardPaths::findExecutable(program).isEmpty()) {
            candidates.push_back({name, program, {}});
        }
    }
    std::printf("| program | start to icon, ms | PSS idle, MB | wake-ups a minute |\n|---|--:|--:|--:|\n");
    for (const Candidate& candidate : candidates) {
        const double start = startToIcon(candidate, announcements);
        const Idle idle = idleOf(candidate, announcements, seconds);
        std::printf("| %s | %.1f | %.1f | %.1f |\n", qPrintable(candidate.name), start, idle.pssInMegabytes,
                    idle.wakeUpsAMinute);
        std::fflush(stdout);
    }
    measureHotKey(desktop, announcements);
    return 0;
}

} // namespace

} // namespace lapsa::bench

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return lapsa::bench::run(QCoreApplication::arguments());
}

#include "Tray_bench.moc"
