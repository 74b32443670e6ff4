// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// Measures Lapsa in the tray of a real taskbar beside other programs: how long the start takes, and what idling costs.
// Writes tables to standard output.

#include "DesktopSession.h"
#include "FirstFrame.h"
#include "JSONEncoder.h"
#include "LapsaItem.h"
#include "LapsaProcess.h"
#include "LapsaSettings.h"
#include "TrayPrograms.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <iterator>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace lapsa::bench {

namespace {

constexpr int patience = 20'000;
constexpr int repetitions = 9;
constexpr unsigned long settling = 6000;

/// How often each thread of a process has gone to sleep so far: every wake-up ends in a sleep.
QHash<QString, double> sleepsOf(const Running& running)
{
    QHash<QString, double> sleeps;
    for (const QString& thread : QDir(running.proc(u"task"_s)).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        sleeps.insert(thread, numberIn(running.proc(u"task/"_s + thread + u"/status"_s), "voluntary_ctxt_switches:"));
    }
    return sleeps;
}

/// Counts only the threads that exist at the end; ended threads are not counted.
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
    return {.pssInMegabytes = running.pss(), .wakeUpsAMinute = wakeUps * 60 / seconds};
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

/// Writes a list of items whose files need not exist: nothing that is measured accesses them.
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

bool waitFor(const std::function<bool()>& condition)
{
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition() && !elapsed.hasExpired(patience)) {
        QThread::msleep(20);
    }
    return condition();
}

struct Frames
{
    double first;
    double again;
};

/// Milliseconds from a click on the icon, as the taskbar forwards it, to something new on the screen.
std::optional<Frames> framesOf(const Candidate& candidate, Announcements& announcements)
{
    FirstFrame screen;
    std::vector<double> first;
    std::vector<double> again;
    constexpr int starts = 5;
    for (int i = 0; i < starts; ++i) {
        const Running running(candidate);
        std::ignore = announcements.waitForOne();
        QThread::msleep(settling);
        for (int opened = 0; opened < 3; ++opened) {
            screen.remember();
            announcements.activateLast();
            const std::optional<double> frame = screen.waitForChange();
            if (!frame) {
                return std::nullopt;
            }
            (opened == 0 ? first : again).push_back(*frame);
            QThread::msleep(settling / 6);
            announcements.activateLast();
            if (!screen.waitForReturn()) {
                return std::nullopt;
            }
            QThread::msleep(settling / 6);
        }
    }
    return Frames{.first = median(first), .again = median(again)};
}

void printFrames(const std::vector<Candidate>& candidates, Announcements& announcements)
{
    std::printf("\n| click on the icon | first frame, ms | again, ms |\n|---|--:|--:|\n");
    for (const Candidate& candidate : candidates) {
        const std::optional<Frames> frames = framesOf(candidate, announcements);
        if (!frames) {
            qFatal("The window of %s does not open or close.", qPrintable(candidate.name));
        }
        std::printf("| %s | %.1f | %.1f |\n", qPrintable(candidate.name), frames->first, frames->again);
        std::fflush(stdout);
    }
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
        const double never = running.pss();
        QProcess::execute(lapsa.program, {}); // a second start opens the panel of the running one
        const bool opened = waitFor([] { return test::DesktopSession::lapsaPanel().has_value(); });
        QThread::msleep(settling);
        const double before = running.processorSeconds();
        QThread::sleep(static_cast<unsigned long>(seconds));
        const double used = running.processorSeconds() - before;
        const bool closed = waitFor([] {
            test::VirtualDisplay::press(u"Escape"_s); // it may not have the keyboard yet
            return !test::DesktopSession::lapsaPanel().has_value();
        });
        QThread::msleep(settling);
        if (!opened || !closed) {
            qFatal("The panel does not open or close.");
        }
        std::printf("| %lld | %.1f | %.1f | %.1f | %.2f |\n", static_cast<long long>(count), start, never,
                    running.pss(), 100 * used / seconds);
        std::fflush(stdout);
    }
}

std::vector<Candidate> candidates()
{
    std::vector<Candidate> found{
        {u"Lapsa"_s, test::LapsaProcess::program(), {}},
        {u"a program that only shows an icon"_s, QCoreApplication::applicationDirPath() + u"/lapsa_icon_only"_s, {}}};
    for (const auto& [name, program] : {std::pair(u"CopyQ"_s, u"copyq"_s), std::pair(u"Flameshot"_s, u"flameshot"_s)}) {
        if (!QStandardPaths::findExecutable(program).isEmpty()) {
            found.push_back({name, program, {}});
        }
    }
    return found;
}

void printPrograms(const std::vector<Candidate>& programs, Announcements& announcements, int seconds)
{
    std::printf("| program | start to icon, ms | PSS idle, MB | wake-ups a minute |\n|---|--:|--:|--:|\n");
    for (const Candidate& candidate : programs) {
        const double start = startToIcon(candidate, announcements);
        const Idle idle = idleOf(candidate, announcements, seconds);
        std::printf("| %s | %.1f | %.1f | %.1f |\n", qPrintable(candidate.name), start, idle.pssInMegabytes,
                    idle.wakeUpsAMinute);
        std::fflush(stdout);
    }
}

int run(const QStringList& arguments)
{
    const int seconds = arguments.contains(u"--small"_s) ? 10 : 60;
    test::DesktopSession desktop;
    desktop.startXfceTaskbar();
    Announcements announcements(desktop.bus().address());
    const std::vector<Candidate> programs = candidates();
    if (!arguments.contains(u"--frames"_s)) {
        printPrograms(programs, announcements, seconds);
        printWithItems(desktop, programs.front(), announcements, seconds);
    }
    // The other programs have no window that a click on their icon opens.
    std::vector<Candidate> withWindow;
    std::ranges::copy_if(programs, std::back_inserter(withWindow), [](const Candidate& candidate) {
        return candidate.name == u"Lapsa"_s || candidate.name == u"CopyQ"_s;
    });
    printFrames(withWindow, announcements);
    return 0;
}

} // namespace

} // namespace lapsa::bench

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return lapsa::bench::run(QCoreApplication::arguments());
}
