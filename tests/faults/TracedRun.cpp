// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TracedRun.h"

#include "StoppedCall.h"

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

namespace lapsa::test {

namespace {

constexpr unsigned hangSeconds = 60;
/// A signal may cut calls short as often as it likes, but not for ever: waiting it out is right.
constexpr int mostInterruptions = 20;

volatile std::sig_atomic_t timeIsOver = 0;

void noteTheTime(int)
{
    timeIsOver = 1;
}

/// While one stands, a wait that takes too long is cut short.
class Deadline final
{
public:
    Deadline()
    {
        timeIsOver = 0;
        struct sigaction action = {};
        action.sa_handler = noteTheTime; // and no SA_RESTART
        ::sigaction(SIGALRM, &action, nullptr);
        ::alarm(hangSeconds);
    }

    Deadline(const Deadline&) = delete;
    Deadline& operator=(const Deadline&) = delete;

    ~Deadline() { ::alarm(0); }
};

/// The wait status of the process; nothing when the time is over.
std::optional<int> waitFor(pid_t process)
{
    int status = 0;
    while (::waitpid(process, &status, __WALL) < 0) {
        if (errno != EINTR || timeIsOver != 0) {
            return std::nullopt;
        }
    }
    return timeIsOver != 0 ? std::nullopt : std::optional(status);
}

RunEnd endOf(std::optional<int> status)
{
    if (!status) {
        return {.how = RunEnd::How::Hung};
    }
    if (WIFEXITED(*status)) {
        return {.how = RunEnd::How::Finished, .code = WEXITSTATUS(*status)};
    }
    return {.how = RunEnd::How::Crashed, .code = WTERMSIG(*status)};
}

pid_t start(const std::function<int()>& work, bool traced)
{
    std::fflush(nullptr);
    const pid_t process = ::fork();
    if (process != 0) {
        return process;
    }
    if (traced && (::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0 || ::raise(SIGSTOP) != 0)) {
        ::_exit(EXIT_FAILURE);
    }
    ::_exit(work());
}

class Tracer final
{
public:
    Tracer(pid_t process, const Injection& injection, Abilities abilities, bool listCalls)
        : m_process(process)
        , m_injection(injection)
        , m_abilities(abilities)
        , m_listCalls(listCalls)
    {}

    RunEnd run()
    {
        const Deadline deadline;
        if (const std::optional<int> stopped = waitFor(m_process); !stopped || !WIFSTOPPED(*stopped)) {
            return endOf(stopped);
        }
        ::ptrace(PTRACE_SETOPTIONS, m_process, nullptr, PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL);
        std::optional<int> status = goOn(0);
        while (status && WIFSTOPPED(*status)) {
            const bool atCall = *status >> 8 == (SIGTRAP | (PTRACE_EVENT_SECCOMP << 8));
            status = atCall ? passCall() : goOn(WSTOPSIG(*status));
        }
        if (!status) {
            ::kill(m_process, SIGKILL);
            ::waitpid(m_process, nullptr, __WALL);
        }
        const RunEnd end = endOf(status);
        m_end.how = m_killed && end.how == RunEnd::How::Crashed ? RunEnd::How::Killed : end.how;
        m_end.code = end.code;
        return m_end;
    }

private:
    std::optional<int> goOn(int signal)
    {
        ::ptrace(PTRACE_CONT, m_process, nullptr, signal);
        return waitFor(m_process);
    }

    /// Lets the call that the process stands before happen, or not; the answer is the process's next stop.
    std::optional<int> passCall()
    {
        StoppedCall call(m_process);
        if (call.writesIntoPipe()) {
            return goOn(0);
        }
        ++m_end.calls;
        if (m_listCalls) {
            m_end.listed.push_back(call.text());
        }
        if (const int missing = missingAbility(call)) {
            call.refuse(missing);
            return goOn(0);
        }
        return isMeant(call) ? inject(call) : goOn(0);
    }

    [[nodiscard]] bool isMeant(const StoppedCall& call)
    {
        using enum Injection::Kind;
        if (m_injection.kind == Nothing || call.kind() == nullptr || m_end.calls < m_injection.call) {
            return false;
        }
        if (m_injection.kind == Short && (!call.kind()->count || call.argument(*call.kind()->count) < 2)) {
            return false;
        }
        if (m_end.calls == m_injection.call) {
            m_end.injected = true;
            m_end.where = call.text();
            m_kind = call.kind();
            return true;
        }
        ++m_repetitions;
        const bool reached = m_injection.reach == Injection::Reach::Later ||
                             (m_injection.reach == Injection::Reach::Same && call.kind() == m_kind);
        return m_end.injected && reached && (m_injection.error != EINTR || m_repetitions < mostInterruptions);
    }

    std::optional<int> inject(StoppedCall& call)
    {
        switch (m_injection.kind) {
        case Injection::Kind::Nothing:
            break;
        case Injection::Kind::KillBefore:
            return kill();
        case Injection::Kind::KillAfter: {
            const std::optional<int> returned = untilReturn();
            return returned && WIFSTOPPED(*returned) ? kill() : returned;
        }
        case Injection::Kind::Fail:
            if (call.number() == SYS_close) {
                return failAfterwards(); // a failing close() closes all the same
            }
            call.refuse(m_injection.error);
            break;
        case Injection::Kind::FailAfter:
            return failAfterwards();
        case Injection::Kind::Short:
            call.halve();
            break;
        }
        return goOn(0);
    }

    std::optional<int> kill()
    {
        m_killed = true;
        ::kill(m_process, SIGKILL);
        return waitFor(m_process);
    }

    std::optional<int> untilReturn()
    {
        ::ptrace(PTRACE_SYSCALL, m_process, nullptr, 0);
        return waitFor(m_process);
    }

    std::optional<int> failAfterwards()
    {
        const std::optional<int> returned = untilReturn();
        if (!returned || !WIFSTOPPED(*returned)) {
            return returned;
        }
        StoppedCall(m_process).report(m_injection.error);
        return goOn(0);
    }

    /// The error by which the file system says that it cannot do this at all; 0 where it can.
    [[nodiscard]] int missingAbility(const StoppedCall& call) const
    {
        constexpr int flagsOfOpening = 2;
        constexpr int flagsOfRenaming = 4;
        if (m_abilities == Abilities::All) {
            return 0;
        }
        switch (call.number()) {
        case SYS_openat:
            return (call.argument(flagsOfOpening) & O_TMPFILE) == O_TMPFILE ? EOPNOTSUPP : 0;
        case SYS_renameat2:
            return call.argument(flagsOfRenaming) != 0 ? EINVAL : 0;
        case SYS_copy_file_range:
            return EOPNOTSUPP;
        case SYS_linkat:
            return m_abilities == Abilities::Poor ? EPERM : 0;
        default:
            return 0;
        }
    }

    pid_t m_process;
    Injection m_injection;
    Abilities m_abilities;
    bool m_listCalls;
    RunEnd m_end;
    const TracedCall* m_kind = nullptr;
    int m_repetitions = 0;
    bool m_killed = false;
};

} // namespace

RunEnd runTraced(const std::function<int()>& work, const Injection& injection, Abilities abilities, bool listCalls)
{
    return Tracer(start(work, true), injection, abilities, listCalls).run();
}

RunEnd runApart(const std::function<int()>& work)
{
    const Deadline deadline;
    const pid_t process = start(work, false);
    const std::optional<int> status = waitFor(process);
    if (!status) {
        ::kill(process, SIGKILL);
        ::waitpid(process, nullptr, 0);
    }
    return endOf(status);
}

} // namespace lapsa::test
