// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QString>

#include <chrono>

namespace lapsa::test {

/// A mount that shows a real folder and that a test steers: it can stop answering, answer slowly, or lose its answers.
/// A program of its own serves it, so that a test that hangs or crashes leaves no mount and no process behind. Only
/// this process and its children see the mount.
///
/// It behaves like a simple network share: it keeps modes, times, inode numbers, hard links and extended attributes,
/// remembers nothing between two calls, and has no files without a name and no shared blocks.
class SteeredDisk final
{
public:
    /// Ask before anything is made in the temporary folder, like PrivateMounts::available(), and skip the test without.
    /// Says on standard error what is missing.
    [[nodiscard]] static bool available();

    /// Mounts `folder` at `mountPoint`. Makes both if they are missing; stops the test program if that fails.
    SteeredDisk(const QString& folder, const QString& mountPoint);
    SteeredDisk(const SteeredDisk&) = delete;
    SteeredDisk& operator=(const SteeredDisk&) = delete;
    /// Ends all calls under way with an error and takes the mount away.
    ~SteeredDisk();

    /// From now on no call is answered, until answerAgain().
    void stopAnswering();
    /// The same for calls on one entry, given by its path in the mount without a leading slash. Other entries are
    /// answered, but for those in the same folder: the kernel looks up one after the other there.
    void stopAnsweringOn(const QString& entry);
    void answerAgain();
    /// Returns once a call waits for its answer.
    void awaitStoppedCall();

    /// Every call takes this much longer.
    void answerAfter(std::chrono::milliseconds delay);

    /// From now on removals, renamings, new links and new folders happen and are reported as failed with this `errno`
    /// value; 0 to tell the truth again.
    void loseAnswers(int error);

    /// The disk dies: every call fails at once, for good.
    void die();

private:
    void tell(const QByteArray& command);

    QByteArray m_mountPoint;
    FileDescriptor m_control;
    pid_t m_server = -1;
};

} // namespace lapsa::test
