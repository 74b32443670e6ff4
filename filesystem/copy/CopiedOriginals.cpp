// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CopiedOriginals.h"

#include <fcntl.h>

#include <utility>

namespace lapsa {

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
    }
    m_last.reset();
}

} // namespace lapsa
