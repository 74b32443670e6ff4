// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <memory>

namespace lapsa::test {

/// A disk with a file system of a given kind, in an image beside the folder where it is mounted until this goes. Needs
/// PrivateMounts::available().
class LoopDisk final
{
public:
    /// `kind` as of mkfs(8): "ext4", "xfs" or "btrfs". Nothing where the system cannot make or mount such disks.
    [[nodiscard]] static std::unique_ptr<LoopDisk> mountedAt(const QString& folder, const QString& kind);

    LoopDisk(const LoopDisk&) = delete;
    LoopDisk& operator=(const LoopDisk&) = delete;
    ~LoopDisk();

private:
    explicit LoopDisk(const QString& folder);

    [[nodiscard]] bool mount(const QString& kind) const;

    QString m_folder;
    QString m_image;
};

} // namespace lapsa::test
