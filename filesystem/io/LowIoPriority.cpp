// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LowIoPriority.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace lapsa {

namespace {

// As ioprio_set(2) has them. Not <linux/ioprio.h>: in some releases of Linux 6.1 it cannot be read by a C++ compiler.
constexpr int whoProcess = 1;
constexpr int bestEffortClass = 2;
constexpr int idleClass = 3;
constexpr int classShift = 13;
constexpr int classMask = 7;

constexpr int thisThread = 0;

/// The lowest of the ordinary class. The idle class would wait for as long as anybody else uses the disk, perhaps for
/// ever.
constexpr int lowest = (bestEffortClass << classShift) | 7;

void set(int priority)
{
    ::syscall(SYS_ioprio_set, whoProcess, thisThread, priority);
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
    const auto before = static_cast<int>(::syscall(SYS_ioprio_get, whoProcess, thisThread));
    if (before >= 0 && before != lowest && ((before >> classShift) & classMask) != idleClass) {
        m_before = before;
        set(lowest);
    }
}

} // namespace lapsa
