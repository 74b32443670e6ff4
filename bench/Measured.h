// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <benchmark/benchmark.h>
#include <chrono>

namespace lapsa::bench {

/// Counts the time of `work` alone, of one iteration: what is made before and removed after costs more than what is
/// measured.
template <typename Work>
void measure(benchmark::State& state, Work&& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    const auto end = std::chrono::steady_clock::now();
    state.SetIterationTime(std::chrono::duration<double>(end - begin).count());
}

/// Registers "NAME/n" for the three sizes. Each repetition is one iteration at the largest size.
inline void addSizes(benchmark::internal::Benchmark* added)
{
    added->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace lapsa::bench

/// NAME is "operation/lapsa" or "operation/peer"; the runs of one size stand side by side in the table of ratios.
#define LAPSA_BENCHMARK(FUNCTION, NAME)                                                                                \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(10)->Apply(lapsa::bench::addSizes);                         \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(2)->Apply(lapsa::bench::addSizes);                         \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(1)->Apply(lapsa::bench::addSizes)
