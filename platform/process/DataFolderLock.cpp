// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DataFolderLock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>

#include <thread>

namespace lapsa {

namespace {

constexpr std::chrono::milliseconds pause{10};

bool heldByAnother(int folder)
{
    return errorOf([folder] { return ::flock(folder, LOCK_EX | LOCK_NB); }) == EWOULDBLOCK;
}

} // namespace

DataFolderLock::DataFolderLock(const QString& folder, std::chrono::milliseconds patience)
    // Closed on exec: a program started from here must not keep the lock.
    : m_folder(::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    if (!m_folder) {
        return;
    }
    const auto deadline = std::chrono::steady_clock::now() + patience;
    m_takenByAnother = heldByAnother(m_folder.get());
    while (m_takenByAnother && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::sleep_for(pause);
        m_takenByAnother = heldByAnother(m_folder.get());
    }
}

} // namespace lapsa
