// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CopiedOriginals.h"

#include "LateWriter.h"
#include "SystemCalls.h"

#include <fcntl.h>

#include <utility>

namespace lapsa {

namespace {

/// Empty if it is unknown.
QByteArray pathOf(int file)
{
    const Result<QByteArray> path = realPath(file);
    return path ? path.value() : QByteArray();
}

} // namespace

CopiedOriginals::CopiedOriginals(CopiedFiles files, const Folders& folders, CopyProgress& progress)
    : m_files(std::move(files))
    , m_copy(folders.to)
    , m_progress(progress)
{
    const Result<FileDescriptor> folder =
        openAt(folders.from.folder.get(), folders.from.name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (folder) {
        m_path = pathOf(folder.value().get());
    }
}

bool CopiedOriginals::mayGo(int folder, const char* name)
{
    settleLast();
    const Result<struct statx> now = statAt(folder, name, STATX_BASIC_STATS);
    const auto copied = now ? m_files.find(identityOf(now.value())) : m_files.end();
    if (copied == m_files.end() || copied->second.names <= 0) {
        return false;
    }
    // For links, pipes and devices, the identity stands for the content.
    if (S_ISREG(now.value().stx_mode)) {
        if (!(copied->second == ContentStamp::of(now.value()))) {
            return false;
        }
        Result<SourceFile> file = SourceFile::open({.folder = folder, .name = name, .status = now.value()});
        if (!file) {
            return false;
        }
        m_last = std::move(file).value();
        m_lastIdentity = copied->first;
    }
    --copied->second.names;
    return true;
}

void CopiedOriginals::settleLast()
{
    if (!m_last) {
        return;
    }
    const Result<struct statx> now = statAt(m_last->get(), "", STATX_BASIC_STATS);
    ContentStamp& known = m_files.at(m_lastIdentity);
    if (now && !m_last->wanted()) {
        // Under the lease, only its names can have changed.
        known.statusChanged = now.value().stx_ctime;
    } else if (now && now.value().stx_nlink == 0) {
        followWriter();
    }
    m_last.reset();
}

/// The last file has no name any more, and somebody waits to write to it.
void CopiedOriginals::followWriter()
{
    constexpr QByteArrayView removed(" (deleted)"); // what the system puts behind its path
    QByteArray path = pathOf(m_last->get());
    if (m_path.isEmpty() || !path.startsWith(m_path + '/') || !path.endsWith(removed)) {
        return;
    }
    path.chop(removed.size());
    const Result<FileDescriptor> root =
        openAt(m_copy.folder.get(), m_copy.name.constData(), O_PATH | O_DIRECTORY | O_NOFOLLOW);
    const Result<AtPath> copy =
        root ? openParentOf(root.value().get(), path.sliced(m_path.size() + 1)) : Result<AtPath>(root.error());
    if (copy) {
        followLateWriter(*m_last, m_files.at(m_lastIdentity), copy.value(), m_progress);
    }
}

} // namespace lapsa
