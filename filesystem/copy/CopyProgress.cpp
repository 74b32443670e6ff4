// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CopyProgress.h"

#include "WorkObserver.h"

#include <algorithm>
#include <cerrno>

namespace lapsa {

void CopyProgress::begin()
{
    if (m_begins) {
        m_begins();
    }
}

void CopyProgress::expect(std::int64_t bytes)
{
    m_total = bytes;
    if (isLarge()) {
        m_priority.lower();
    }
}

int CopyProgress::finishWriting()
{
    int error = 0;
    while (error == 0 && !m_writeBehind.isEmpty()) {
        error = m_writeBehind.finishOne();
        error = error == 0 ? goOn() : error;
    }
    return error;
}

int CopyProgress::goOn(std::int64_t bytes)
{
    tell(bytes);
    return m_observer != nullptr && m_observer->stopRequested() ? ECANCELED : 0;
}

void CopyProgress::tell(std::int64_t bytes)
{
    constexpr int shortWork = 1000; // files, about
    if (++m_steps == shortWork) {
        m_priority.lower();
    }
    if (m_observer == nullptr) {
        return;
    }
    m_copied += bytes;
    // Files may grow after the total was found, and hard links may have to become files.
    m_observer->copied(m_total > 0 ? std::min(m_copied, m_total) : m_copied, m_total);
}

} // namespace lapsa
