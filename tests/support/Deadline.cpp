// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Deadline.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace lapsa::test {

namespace {

constexpr unsigned hangSeconds = 60;

volatile std::sig_atomic_t timeIsOver = 0;

void noteTheTime(int)
{
    timeIsOver = 1;
}

} // namespace

Deadline::Deadline()
{
    timeIsOver = 0;
    struct sigaction action = {};
    action.sa_handler = noteTheTime; // and no SA_RESTART
    ::sigaction(SIGALRM, &action, nullptr);
    ::alarm(hangSeconds);
}

Deadline::~Deadline()
{
    ::alarm(0);
}

bool Deadline::isOver()
{
    return timeIsOver != 0;
}

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

} // namespace lapsa::test
