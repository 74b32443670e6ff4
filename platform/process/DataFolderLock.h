// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QString>

#include <chrono>

namespace lapsa {

/// Keeps other processes from using the same data folder, even without a session bus. The lock is on the folder itself:
/// it leaves no file behind, and it is released however the process ends.
class DataFolderLock final
{
public:
    /// Retries for up to `patience`, because a previous process may be about to exit.
    DataFolderLock(const QString& folder, std::chrono::milliseconds patience);

    /// Whether another process uses the folder. Also false if the file system has no locks, or if the folder cannot be
    /// opened: then its files cannot be read or damaged either.
    [[nodiscard]] bool takenByAnother() const { return m_takenByAnother; }

private:
    FileDescriptor m_folder;
    bool m_takenByAnother = false;
};

} // namespace lapsa
