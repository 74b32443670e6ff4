// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Tally.h"

#include <sys/mman.h>

#include <atomic>
#include <new>

namespace lapsa::test {

namespace {

void addTo(int& sum, int number)
{
    std::atomic_ref(sum) += number;
}

} // namespace

Tally& Tally::shared()
{
    static Tally* const tally = [] {
        void* const memory = ::mmap(nullptr, sizeof(Tally), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            qFatal("no shared memory");
        }
        return new (memory) Tally;
    }();
    return *tally;
}

void Tally::add(std::size_t row, const Figures& figures)
{
    Figures& sum = m_rows.at(row);
    std::atomic_ref(sum.calls) = figures.calls;
    addTo(sum.kills, figures.kills);
    addTo(sum.faults, figures.faults);
    addTo(sum.ends, figures.ends);
    addTo(sum.doubled, figures.doubled);
    addTo(sum.doubledLater, figures.doubledLater);
    addTo(sum.unrecorded, figures.unrecorded);
    addTo(sum.failed, figures.failed);
}

} // namespace lapsa::test
