// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// Measures from outside how soon the real program answers: asks it over the bus every 10 ms, from the first moment on,
// whatever it has to do; then how soon its icon is there. Writes two tables to standard output. --items COUNT, --tree
// COUNT and --full MEBIBYTES set the sizes, --starts COUNT the starts of each kind; --answers and --icon leave the
// other table out.

#include "DesktopSession.h"
#include "LapsaProcess.h"
#include "Privileges.h"
#include "Situations.h"
#include "SteeredDisk.h"
#include "TrayPrograms.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::bench {

namespace {

constexpr int interval = 10;        // ms
constexpr int patience = 1'800'000; // ms

const QString& busName()
{
    static const QString name = u"org.lapsa.Lapsa"_s;
    return name;
}

struct Answers
{
    double firstAfterStart = 0; // ms, from the start of the process
    double first = 0;           // ms, from the question
    double longest = 0;
    int count = 0;
};

double millisecondsOf(const QElapsedTimer& elapsed)
{
    return double(elapsed.nsecsElapsed()) / 1e6;
}

/// Asks the running program a question that changes nothing.
class Questions final
{
public:
    explicit Questions(const QDBusConnection& bus)
        : m_bus(bus)
    {
        m_started.start();
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout([this] { ask(); });
        m_checks.callOnTimeout([this] { check(); });
        QObject::connect(&m_owner, &QDBusServiceWatcher::serviceRegistered, &m_loop, [this] {
            ask(); // the first one comes at once
            m_timer.start(interval);
        });
    }

    Answers askUntil(const std::function<bool()>& isOver)
    {
        constexpr int checkInterval = 200; // ms
        m_isOver = isOver;
        m_checks.start(checkInterval);
        QTimer::singleShot(patience, &m_loop, [] { qFatal("The program does not come to an end with its work."); });
        m_loop.exec();
        return m_answers;
    }

private:
    /// Nobody has this item. To say so, the program looks into its list.
    void ask()
    {
        QDBusMessage question =
            QDBusMessage::createMethodCall(busName(), u"/org/lapsa/Lapsa"_s, u"org.lapsa.Lapsa1"_s, u"Lock"_s);
        question.setArguments({u"nobody's"_s, true});
        QElapsedTimer asked;
        asked.start();
        ++m_open;
        auto* const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question, patience), &m_loop);
        QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_loop,
                         [this, asked, watcher] { answered(*watcher, millisecondsOf(asked)); });
    }

    void answered(QDBusPendingCallWatcher& watcher, double milliseconds)
    {
        if (watcher.error().type() != QDBusError::InvalidArgs) {
            qFatal("An unexpected answer: %s", qPrintable(watcher.error().message()));
        }
        watcher.deleteLater();
        if (m_answers.count == 0) {
            m_answers.first = milliseconds;
            m_answers.firstAfterStart = millisecondsOf(m_started);
        }
        ++m_answers.count;
        m_answers.longest = std::max(m_answers.longest, milliseconds);
        --m_open;
    }

    void check()
    {
        if (m_answers.count > 0 && m_timer.isActive() && m_isOver()) {
            m_timer.stop();
        }
        if (m_answers.count > 0 && !m_timer.isActive() && m_open == 0) {
            m_loop.quit();
        }
    }

    QDBusConnection m_bus;
    QEventLoop m_loop;
    QDBusServiceWatcher m_owner{busName(), m_bus, QDBusServiceWatcher::WatchForRegistration};
    QTimer m_timer;
    QTimer m_checks;
    QElapsedTimer m_started;
    std::function<bool()> m_isOver;
    Answers m_answers;
    int m_open = 0;
};

void printAnswers(const Sizes& sizes)
{
    std::printf("| what Lapsa has to do | first answer after the start, ms | first answer after its question, ms "
                "| longest, ms | questions | took, s |\n|---|--:|--:|--:|--:|--:|\n");
    for (const Situation& situation : situations(sizes)) {
        const test::DesktopSession desktop;
        const Prepared prepared = situation.prepare(desktop.home());
        const QDBusConnection bus = QDBusConnection::connectToBus(desktop.bus().address(), u"questions"_s);
        {
            Questions questions(bus);
            QElapsedTimer elapsed;
            elapsed.start();
            test::LapsaProcess lapsa;
            const Answers answers = questions.askUntil(prepared.isOver);
            std::printf("| %s | %.0f | %.1f | %.1f | %d | %.1f |\n", qPrintable(situation.name),
                        answers.firstAfterStart, answers.first, answers.longest, answers.count,
                        millisecondsOf(elapsed) / 1000);
            std::fflush(stdout);
            std::ignore = lapsa.terminate();
        }
        QDBusConnection::disconnectFromBus(u"questions"_s);
    }
}

/// One start with new data.
double iconOf(const Situation& situation, const test::DesktopSession& desktop, Announcements& announcements)
{
    QDir(desktop.home().dataPath()).removeRecursively();
    const Prepared prepared = situation.prepare(desktop.home());
    QElapsedTimer elapsed;
    elapsed.start();
    const Running lapsa({.name = u"Lapsa"_s, .program = test::LapsaProcess::program(), .arguments = {}});
    if (!announcements.waitForOne()) {
        qFatal("The icon does not come.");
    }
    return millisecondsOf(elapsed);
}

/// By turns: what else the machine does falls on all alike.
void printIcons(int starts)
{
    test::DesktopSession desktop;
    desktop.startXfceTaskbar();
    Announcements announcements(desktop.bus().address());
    const std::vector<Situation> all = startSituations();
    std::vector<std::vector<double>> times(all.size());
    for (int start = 0; start < starts; ++start) {
        for (std::size_t turn = 0; turn < all.size(); ++turn) {
            const std::size_t number = (turn + std::size_t(start)) % all.size();
            times[number].push_back(iconOf(all[number], desktop, announcements));
        }
    }
    std::printf("\n| at the start | to the icon, ms | beside the empty list |\n|---|--:|--:|\n");
    for (std::size_t number = 0; number < all.size(); ++number) {
        std::printf("| %s | %.1f | %.2f |\n", qPrintable(all[number].name), median(times[number]),
                    median(times[number]) / median(times.front()));
    }
}

int run(const QStringList& arguments)
{
    Sizes sizes;
    int starts = 15;
    for (qsizetype next = 1; next + 1 < arguments.size(); ++next) {
        const qint64 number = arguments[next + 1].toLongLong();
        if (arguments[next] == u"--items") {
            sizes.items = number;
        } else if (arguments[next] == u"--tree") {
            sizes.tree = number;
        } else if (arguments[next] == u"--full") {
            sizes.fullBytes = number << 20;
        } else if (arguments[next] == u"--starts") {
            starts = int(number);
        }
    }
    // Before the first temporary folder.
    std::optional<test::PrivateMounts> mounts;
    if (test::SteeredDisk::available()) {
        mounts.emplace();
    }
    if (!arguments.contains(u"--icon"_s)) {
        printAnswers(sizes);
    }
    if (!arguments.contains(u"--answers"_s)) {
        printIcons(starts);
    }
    return 0;
}

} // namespace

} // namespace lapsa::bench

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return lapsa::bench::run(QCoreApplication::arguments());
}
