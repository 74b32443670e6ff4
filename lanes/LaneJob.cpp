// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LaneJob.h"

namespace lapsa {

namespace {

std::int64_t steadyNow()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

void LaneJob::report(std::int64_t done, std::int64_t total)
{
    m_done = done;
    m_total = total;
    alive();
}

void LaneJob::alive()
{
    m_lastSign = steadyNow();
}

bool LaneJob::silentFor(std::chrono::nanoseconds span) const
{
    return steadyNow() - m_lastSign > span.count();
}

} // namespace lapsa
