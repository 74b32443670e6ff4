// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int count = 50;
constexpr const char* turnedAway = "Lapsa cannot start: another one works on the same data folder\n";
/// Only a limit for a machine under load.
constexpr int patience = 120'000;

} // namespace

/// Processes that are held at the last step before the program, until all of them are let go by one call.
class StartGate final
{
public:
    StartGate()
    {
        if (::pipe2(m_arrivals.data(), O_CLOEXEC) != 0 || ::pipe2(m_gate.data(), O_CLOEXEC) != 0) {
            qFatal("no pipe");
        }
    }

    StartGate(const StartGate&) = delete;
    StartGate& operator=(const StartGate&) = delete;

    ~StartGate()
    {
        open();
        ::close(m_arrivals[0]);
        ::close(m_arrivals[1]);
        ::close(m_gate[0]);
    }

    /// Returns when the process waits at the gate; what it will say goes to the file `errors`.
    [[nodiscard]] pid_t lineUp(const QByteArray& program, const QByteArray& argument, const QByteArray& errors) const
    {
        const pid_t pid = ::fork();
        if (pid == 0) {
            waitAndBecome(program, argument, errors);
        }
        char byte = 0;
        if (pid < 0 || ::read(m_arrivals[0], &byte, 1) != 1) {
            qFatal("a process does not come to the gate");
        }
        return pid;
    }

    void open()
    {
        if (m_gate[1] >= 0) {
            ::close(std::exchange(m_gate[1], -1));
        }
    }

private:
    [[noreturn]] void waitAndBecome(const QByteArray& program, const QByteArray& argument,
                                    const QByteArray& errors) const
    {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(::open(errors.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), STDERR_FILENO);
        // Its own copy of the writing end would keep the gate closed for ever.
        ::close(m_gate[1]);
        char byte = 0;
        if (::write(m_arrivals[1], &byte, 1) == 1 && ::read(m_gate[0], &byte, 1) == 0) {
            ::execl(program.constData(), program.constData(), argument.constData(), nullptr);
        }
        ::_exit(EXIT_FAILURE);
    }

    std::array<int, 2> m_arrivals{};
    std::array<int, 2> m_gate{};
};

/// Fifty programs started in the same instant, each with a file of its own.
class ManyStartsTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_files.clear();
        for (int i = 0; i < count; ++i) {
            m_files.push_back(m_home->makeFile(u"%1.txt"_s.arg(i, 2, 10, QChar(u'0'))));
        }
    }

    void cleanup()
    {
        for (const Started& started : std::exchange(m_all, {})) {
            if (started.runs) {
                ::kill(started.pid, SIGKILL);
                ::waitpid(started.pid, nullptr, 0);
            }
        }
        m_home.reset();
    }

    void withASessionBusOneSurvivesAndHasEveryFile()
    {
        const SessionBus bus;

        startAll();

        QTRY_COMPARE_WITH_TIMEOUT(storedSorted(), m_files, patience);
        QTRY_COMPARE_WITH_TIMEOUT(living(), 1, patience);
        qInfo("%d starts: %lld ms until one is left", count, m_timer.elapsed());
        endTheSurvivor();
        QTRY_COMPARE_WITH_TIMEOUT(living(), 0, patience);
        for (qsizetype i = 0; i < count; ++i) {
            QCOMPARE(m_all[i].exitCode, 0);
            QCOMPARE(errorsOf(i), QByteArray());
        }
        QCOMPARE(storedSorted(), m_files);
    }

    void withoutASessionBusOneSurvivesAndTheOthersSaySo()
    {
        const NoSessionBus noBus;

        startAll();

        QTRY_COMPARE_WITH_TIMEOUT(living(), 1, patience);
        qInfo("%d starts: %lld ms until one is left", count, m_timer.elapsed());
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home).size(), 1, patience);
        const qsizetype survivor = endTheSurvivor();
        QTRY_COMPARE_WITH_TIMEOUT(living(), 0, patience);
        for (qsizetype i = 0; i < count; ++i) {
            QCOMPARE(m_all[i].exitCode, i == survivor ? 0 : 1);
            QCOMPARE(errorsOf(i), i == survivor ? QByteArray() : QByteArray(turnedAway));
            QVERIFY(QFile::exists(m_files[i]));
        }
        QCOMPARE(storedPaths(*m_home), QStringList{m_files[survivor]});
    }

private:
    struct Started
    {
        pid_t pid = 0;
        bool runs = true;
        /// -1 after a crash.
        int exitCode = -1;
    };

    void startAll()
    {
        StartGate gate;
        m_home->makeFolder(u"errors"_s);
        for (qsizetype i = 0; i < count; ++i) {
            m_all.push_back({.pid = gate.lineUp(QFile::encodeName(LapsaProcess::program()),
                                                QFile::encodeName(m_files[i]), QFile::encodeName(errorFile(i)))});
        }
        m_timer.start();
        gate.open();
    }

    [[nodiscard]] QString errorFile(qsizetype number) const { return m_home->path(u"errors/%1"_s.arg(number)); }

    [[nodiscard]] QByteArray errorsOf(qsizetype number) const
    {
        QFile file(errorFile(number));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not to be read");
    }

    [[nodiscard]] QStringList storedSorted() const
    {
        QStringList paths = storedPaths(*m_home);
        paths.sort();
        return paths;
    }

    [[nodiscard]] qsizetype living()
    {
        for (Started& started : m_all) {
            int status = 0;
            if (started.runs && ::waitpid(started.pid, &status, WNOHANG) == started.pid) {
                started.runs = false;
                started.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
            }
        }
        return std::ranges::count(m_all, true, &Started::runs);
    }

    /// Asks it to end; which one it was.
    qsizetype endTheSurvivor() const
    {
        const auto found = std::ranges::find(m_all, true, &Started::runs);
        if (found == m_all.cend()) {
            return -1;
        }
        ::kill(found->pid, SIGTERM);
        return found - m_all.cbegin();
    }

    std::unique_ptr<TemporaryHome> m_home;
    QStringList m_files;
    QList<Started> m_all;
    QElapsedTimer m_timer;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::ManyStartsTest)
#include "ManyStarts_test.moc"
