// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <sys/types.h>

#include <memory>

namespace lapsa::test {

class FaultWorld;

/// Two disks with ext4 in the place of a world's home and volume, whose power can be cut: what is then on them is what
/// had reached them at that moment, and the journals are gone through at the next mounting, as after a real cut. The
/// disks themselves keep nothing back: an acknowledged write is on them.
class DiskPair final
{
public:
    /// Null where the system cannot do it: that takes root, loop devices, and XFS below the disks, because it takes a
    /// picture of a file in one instant.
    [[nodiscard]] static std::unique_ptr<DiskPair> mountedIn(const FaultWorld& world);

    DiskPair(const DiskPair&) = delete;
    DiskPair& operator=(const DiskPair&) = delete;
    ~DiskPair();

    /// Everything written so far is on the disks.
    void sync() const;
    /// From now on the journals are committed all the time, by a process that has other files synced: what is written
    /// meanwhile is caught half done.
    void startCommits();
    /// Cuts the power of both in the same instant, and mounts what is there. Ends startCommits().
    void cutPower();

private:
    explicit DiskPair(const FaultWorld& world);

    [[nodiscard]] bool make();
    [[nodiscard]] bool mountDisks() const;
    void unmountDisks() const;
    void stopCommits();

    QByteArray m_base;
    QString m_home;
    QString m_volume;
    pid_t m_commits = -1;
};

} // namespace lapsa::test
