// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LowIoPriority.h"

#include <linux/ioprio.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace lapsa {

namespace {

constexpr int thisThread = 0;

/// The lowest of the ordinary class. The idle class would wait for as long as anybody else uses the disk, perhaps for
/// ever.
constexpr int lowest = IOPRIO_PRIO_VALUE(IOPRIO_CLASS_BE, 7);

void set(int priority)
{
    ::syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, thisThread, priority);
}

} // namespace

LowIoPriority::~LowIoPriority()
{
    if (m_before) {
        set(*m_before);
    }
}

void LowIoPriority::lower()
{
    if (m_asked) {
        return;
    }
    m_asked = true;
    const auto before = static_cast<int>(::syscall(SYS_ioprio_get, IOPRIO_WHO_PROCESS, thisThread));
    if (before >= 0 && before != lowest && IOPRIO_PRIO_CLASS(before) != IOPRIO_CLASS_IDLE) {
        m_before = before;
        set(lowest);
    }
}

} // namespace lapsa
