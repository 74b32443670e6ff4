// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "SteeredDisk.h"

#include "Privileges.h"

#include <QDir>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <tuple>
#include <utility>

namespace lapsa::test {

namespace {

#ifdef LAPSA_STEERED_DISK

constexpr const char* serverProgram = LAPSA_STEERED_DISK;

#else

constexpr const char* serverProgram = nullptr;

#endif

/// The number of the control socket in the server.
constexpr int controlOfServer = 3;

struct Sockets
{
    FileDescriptor own;
    FileDescriptor ofServer;
};

Sockets connectedSockets()
{
    std::array<int, 2> ends = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        qFatal("socketpair: %s", qPrintable(qt_error_string(errno)));
    }
    return {.own = FileDescriptor(ends[0]), .ofServer = FileDescriptor(ends[1])};
}

pid_t startServer(QByteArray folder, QByteArray mountPoint, int control)
{
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, control, controlOfServer);
    QByteArray program(serverProgram);
    std::array<char*, 4> arguments = {program.data(), folder.data(), mountPoint.data(), nullptr};
    pid_t server = -1;
    const int error = ::posix_spawn(&server, program.constData(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        qFatal("%s: %s", serverProgram, qPrintable(qt_error_string(error)));
    }
    return server;
}

bool isMissing(const char* what)
{
    std::fprintf(stderr, "NO STEERED DISK: tests with slow, dead and unreliable disks need %s\n", what);
    return false;
}

} // namespace

bool SteeredDisk::available()
{
    if (serverProgram == nullptr) {
        return isMissing("libfuse3-dev when they are built");
    }
    if (::access("/dev/fuse", R_OK | W_OK) != 0) {
        return isMissing("/dev/fuse");
    }
    return PrivateMounts::available() || isMissing("root");
}

SteeredDisk::SteeredDisk(const QString& folder, const QString& mountPoint)
    : m_mountPoint(mountPoint.toUtf8())
{
    if (!QDir().mkpath(folder) || !QDir().mkpath(mountPoint)) {
        qFatal("no folders for a steered disk");
    }
    Sockets sockets = connectedSockets();
    m_server = startServer(folder.toUtf8(), m_mountPoint, sockets.ofServer.get());
    std::ignore = sockets.ofServer.close(); // so that its end is noticed
    m_control = std::move(sockets.own);
    tell("ready?");
}

SteeredDisk::~SteeredDisk()
{
    die();
    ::umount2(m_mountPoint.constData(), MNT_DETACH);
}

void SteeredDisk::die()
{
    if (m_server > 0) {
        ::kill(m_server, SIGKILL); // the kernel then ends all calls
        std::ignore = retrying([&] { return ::waitpid(std::exchange(m_server, -1), nullptr, 0); });
    }
}

void SteeredDisk::stopAnswering()
{
    tell("stop");
}

void SteeredDisk::stopAnsweringOn(const QString& entry)
{
    tell("stop /" + entry.toUtf8());
}

void SteeredDisk::answerAgain()
{
    tell("go");
}

void SteeredDisk::awaitStoppedCall()
{
    tell("await");
}

void SteeredDisk::answerAfter(std::chrono::milliseconds delay)
{
    tell("delay " + QByteArray::number(qlonglong(delay.count())));
}

void SteeredDisk::loseAnswers(int error)
{
    tell("lose " + QByteArray::number(error));
}

/// Returns when it has taken effect.
void SteeredDisk::tell(const QByteArray& command)
{
    const QByteArray line = command + '\n';
    char answer = 0;
    if (::send(m_control.get(), line.constData(), std::size_t(line.size()), MSG_NOSIGNAL) != line.size() ||
        retrying([&] { return ::read(m_control.get(), &answer, 1); }) != 1) {
        qFatal("the steered disk has ended");
    }
}

} // namespace lapsa::test
