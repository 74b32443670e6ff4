// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DetachedProcess.h"

#include "FileDescriptor.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <csignal>
#include <tuple>
#include <vector>

namespace lapsa {

namespace {

/// Reaps a child process without a thread or a signal handler, so that it does not stay behind as a zombie.
class ChildWatch final : public QObject
{
public:
    ChildWatch(pid_t child, int descriptor)
        : QObject(QCoreApplication::instance())
        , m_child(child)
        , m_descriptor(descriptor)
        , m_notifier(descriptor, QSocketNotifier::Read)
    {
        connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
            m_notifier.setEnabled(false);
            std::ignore = retrying([this] { return ::waitpid(m_child, nullptr, WNOHANG); });
            deleteLater();
        });
    }

private:
    pid_t m_child;
    FileDescriptor m_descriptor;
    QSocketNotifier m_notifier;
};

} // namespace

bool startDetached(const QList<QByteArray>& command)
{
    std::vector<char*> arguments;
    for (const QByteArray& argument : command) {
        arguments.push_back(const_cast<char*>(argument.constData())); // posix_spawn(3) promises not to write
    }
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSID);

    pid_t child = 0;
    const int failed = ::posix_spawnp(&child, arguments.front(), &files, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    if (failed != 0) {
        return false;
    }
    const auto descriptor = int(::syscall(SYS_pidfd_open, child, 0));
    if (descriptor >= 0) {
        new ChildWatch(child, descriptor); // owned by the application object; destroyed when the child ends
    }
    return true;
}

} // namespace lapsa
