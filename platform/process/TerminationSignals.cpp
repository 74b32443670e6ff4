// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TerminationSignals.h"

#include <QSocketNotifier>

#include <sys/signalfd.h>

#include <csignal>

namespace lapsa {

namespace {

sigset_t terminationSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&set, signal);
    }
    return set;
}

void passOver(int /*signal*/) {}

} // namespace

void TerminationSignals::hold()
{
    // Not SIG_IGN: programs started from here would inherit it.
    struct sigaction passing = {};
    passing.sa_handler = passOver;
    passing.sa_flags = SA_RESTART;
    for (const int signal : {SIGPIPE, SIGXFSZ, SIGIO}) {
        ::sigaction(signal, &passing, nullptr);
    }
    const sigset_t set = terminationSignals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

TerminationSignals::TerminationSignals()
{
    const sigset_t set = terminationSignals();
    m_descriptor = FileDescriptor(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    if (m_descriptor) {
        m_notifier = std::make_unique<QSocketNotifier>(m_descriptor.get(), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &TerminationSignals::read);
    }
}

TerminationSignals::~TerminationSignals() = default;

void TerminationSignals::read()
{
    signalfd_siginfo info{};
    if (retrying([&] { return ::read(m_descriptor.get(), &info, sizeof info); }) == ssize_t(sizeof info)) {
        emit received();
    }
}

} // namespace lapsa
