// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDescriptor.h"

#include <QString>

#include <chrono>

namespace lapsa {

/// Keeps other processes from working on the same data folder, also where no session bus brings them together. The lock
/// lies on the folder itself: it leaves no file behind, and the end of the process, however it comes, releases it.
class DataFolderLock final
{
public:
    /// Tries for as long as `patience`: a predecessor may be just ending.
    DataFolderLock(const QString& folder, std::chrono::milliseconds patience);

    /// Whether another process works on the folder. False also where the file system knows no locks, or the folder
    /// cannot be opened: then nothing can be read or spoilt there either.
    [[nodiscard]] bool takenByAnother() const { return m_takenByAnother; }

private:
    FileDescriptor m_folder;
    bool m_takenByAnother = false;
};

} // namespace lapsa
