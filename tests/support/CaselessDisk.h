// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <memory>

namespace lapsa::test {

/// A small disk with exFAT that takes "a.txt" and "A.TXT" for the same file, and shows each spelling under an inode of
/// its own. Gone with this object. Ask PrivateMounts::available() first.
class CaselessDisk final
{
public:
    /// Mounted at a folder, which is made; nothing where the system has no such disks.
    [[nodiscard]] static std::unique_ptr<CaselessDisk> mountedAt(const QString& folder);

    CaselessDisk(const CaselessDisk&) = delete;
    CaselessDisk& operator=(const CaselessDisk&) = delete;
    ~CaselessDisk();

private:
    explicit CaselessDisk(const QString& folder);

    [[nodiscard]] bool mount();

    QString m_folder;
    QString m_image;
};

} // namespace lapsa::test
