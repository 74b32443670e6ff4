// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// Lapsa in the tray of a real panel beside other programs there: the start, and what it costs to be there.
// Writes tables to standard output.

#include "DesktopSession.h"
#include "JSONEncoder.h"
#include "LapsaItem.h"
#include "LapsaProcess.h"
#include "LapsaSettings.h"

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
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
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

double pssOf(const Running& running)
{
    constexpr double kibibytesInMegabyte = 1000.0 * 1000 / 1024;
    return numberIn(running.proc(u"smaps_rollup"_s), "Pss:") / kibibytesInMegabyte;
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
    return {.pssInMegabytes = pssOf(running), .wakeUpsAMinute = wakeUps * 60 / seconds};
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

/// A list of items whose files need not exist: nothing of what is measured looks at them.
void writeItems(const test::DesktopSession& desktop, std::int64_t count)
{
    using namespace std::chrono_literals;
    const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    QList<LapsaItem> items;
    for (std::int64_t number = 0; number < count; ++number) {
        const QString name = u"report %1.pdf"_s.arg(number);
        items.push_back({.id = newItemId(),
                         .path = u"/home/somebody/Downloads/"_s + name,
                         .displayName = name,
                         .addedAt = now,
                         .expiresAt = now + 240h});
    }
    desktop.home().writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
}

/// Seconds of the processor that a process has used so far.
double processorSecondsOf(const Running& running)
{
    QFile file(running.proc(u"stat"_s));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    // Behind the name, which may hold anything: utime and stime are fields 14 and 15 of proc(5).
    const QByteArray line = file.readAll();
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    constexpr int utime = 11;
    return (fields[utime].toDouble() + fields[utime + 1].toDouble()) / double(::sysconf(_SC_CLK_TCK));
}

bool waitFor(const std::function<bool()>& condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && !elapsed.hasExpired(patience)) {
        QThread::msleep(20);
    }
    return condition();
}

void printWithItems(const test::DesktopSession& desktop, const Candidate& lapsa, Announcements& announcements,
                    int seconds)
{
    LapsaSettings settings;
    settings.keepPanelOpen = false;
    desktop.home().writeDataFile(u"settings.json"_s, JSONEncoder::lapsa().encode(settings));
    std::printf("\n| Lapsa with items | start to icon, ms | PSS, panel never opened, MB | PSS, opened and closed, MB "
                "| processor with the panel open, %% of a core |\n|--:|--:|--:|--:|--:|\n");
    for (const std::int64_t count : {0, 100, 10'000}) {
        writeItems(desktop, count);
        const double start = startToIcon(lapsa, announcements);
        const Running running(lapsa);
        std::ignore = announcements.waitForOne();
        QThread::msleep(settling);
        const double never = pssOf(running);
        QProcess::execute(lapsa.program, {}); // started again, it opens the panel of the one that runs
        const bool opened = waitFor([] { return test::DesktopSession::lapsaPanel().has_value(); });
        QThread::msleep(settling);
        const double before = processorSecondsOf(running);
        QThread::sleep(static_cast<unsigned long>(seconds));
        const double used = processorSecondsOf(running) - before;
        const bool closed = waitFor([] {
            test::VirtualDisplay::press(u"Escape"_s); // it need not have the keyboard at once
            return !test::DesktopSession::lapsaPanel().has_value();
        });
        QThread::msleep(settling);
        if (!opened || !closed) {
            qFatal("The panel does not open or close.");
        }
        std::printf("| %lld | %.1f | %.1f | %.1f | %.2f |\n", static_cast<long long>(count), start, never,
                    pssOf(running), 100 * used / seconds);
        std::fflush(stdout);
    }
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
    printWithItems(desktop, candidates.front(), announcements, seconds);
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
