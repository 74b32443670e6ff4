// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TracedRun.h"

#include "Deadline.h"
#include "StoppedCall.h"

#include <fcntl.h>
#include <poll.h>
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

/// A signal may cut calls short as often as it likes, but not for ever: waiting it out is right.
constexpr int mostInterruptions = 20;

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
        ::ptrace(PTRACE_SETOPTIONS, m_process, nullptr,
                 PTRACE_O_TRACESECCOMP | PTRACE_O_TRACECLONE | PTRACE_O_EXITKILL);
        goOn(m_process, 0);
        while (!m_status) {
            int status = 0;
            const pid_t thread = ::waitpid(-1, &status, __WALL);
            if (thread < 0 && (errno != EINTR || Deadline::isOver())) {
                break;
            }
            if (thread > 0) {
                handle(thread, status);
            }
        }
        if (!m_status) {
            endByForce();
        }
        const RunEnd end = endOf(m_status);
        m_end.how = m_killed && end.how == RunEnd::How::Crashed ? RunEnd::How::Killed : end.how;
        m_end.code = end.code;
        return m_end;
    }

private:
    void handle(pid_t thread, int status)
    {
        if (!WIFSTOPPED(status)) {
            if (thread == m_process) {
                m_status = status;
            }
            return;
        }
        constexpr int eventShift = 16;
        if (status >> 8 == (SIGTRAP | (PTRACE_EVENT_SECCOMP << 8))) {
            passCall(thread);
        } else {
            // A new thread begins with a stop that nobody sent.
            const bool isOfTracing = status >> eventShift != 0 || WSTOPSIG(status) == SIGSTOP;
            goOn(thread, isOfTracing ? 0 : WSTOPSIG(status));
        }
    }

    /// Its threads end before it.
    void endByForce() const
    {
        ::kill(m_process, SIGKILL);
        pid_t thread = 0;
        for (int status = 0; thread >= 0 && (thread != m_process || WIFSTOPPED(status));) {
            thread = ::waitpid(-1, &status, __WALL);
        }
    }

    static void goOn(pid_t thread, int signal) { ::ptrace(PTRACE_CONT, thread, nullptr, signal); }

    /// Lets the call that the thread stands before happen, or not.
    void passCall(pid_t thread)
    {
        StoppedCall call(thread);
        if (call.writesIntoPipe()) {
            goOn(thread, 0);
            return;
        }
        ++m_end.calls;
        if (m_listCalls) {
            m_end.listed.push_back(call.text());
        }
        if (const int missing = missingAbility(call)) {
            call.refuse(missing);
            goOn(thread, 0);
        } else if (isMeant(call)) {
            inject(thread, call);
        } else {
            goOn(thread, 0);
        }
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

    void inject(pid_t thread, StoppedCall& call)
    {
        switch (m_injection.kind) {
        case Injection::Kind::Nothing:
            break;
        case Injection::Kind::KillBefore:
            kill();
            return;
        case Injection::Kind::KillAfter:
            if (const std::optional<int> returned = untilReturn(thread); returned && WIFSTOPPED(*returned)) {
                kill();
            }
            return;
        case Injection::Kind::End:
            askForTheEnd(thread);
            break;
        case Injection::Kind::Fail:
            if (call.number() == SYS_close) {
                failAfterwards(thread); // a failing close() closes all the same
                return;
            }
            call.refuse(m_injection.error);
            break;
        case Injection::Kind::FailAfter:
            failAfterwards(thread);
            return;
        case Injection::Kind::Short:
            call.halve();
            break;
        }
        goOn(thread, 0);
    }

    void kill()
    {
        m_killed = true;
        ::kill(m_process, SIGKILL);
    }

    /// Tells the main thread, and gives it the time to ask the others to stop before this one goes on.
    void askForTheEnd(pid_t thread)
    {
        constexpr int head = 3; // milliseconds
        ::syscall(SYS_tgkill, m_process, m_process, SIGUSR1);
        if (thread == m_process) {
            return;
        }
        for (int waited = 0; waited < head; ++waited) {
            int status = 0;
            if (::waitpid(m_process, &status, __WALL | WNOHANG) == m_process) {
                handle(m_process, status);
            }
            ::poll(nullptr, 0, 1);
        }
    }

    std::optional<int> untilReturn(pid_t thread)
    {
        ::ptrace(PTRACE_SYSCALL, thread, nullptr, 0);
        const std::optional<int> status = waitFor(thread);
        if (status && !WIFSTOPPED(*status) && thread == m_process) {
            m_status = status;
        }
        return status;
    }

    void failAfterwards(pid_t thread)
    {
        const std::optional<int> returned = untilReturn(thread);
        if (returned && WIFSTOPPED(*returned)) {
            StoppedCall(thread).report(m_injection.error);
            goOn(thread, 0);
        }
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
    /// Of the whole process, once it has ended.
    std::optional<int> m_status;
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
