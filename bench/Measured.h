// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <time.h>

#include <benchmark/benchmark.h>
#include <chrono>
#include <string>
#include <vector>

namespace lapsa::bench {

inline double threadSeconds()
{
    timespec time = {};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + 1e-9 * double(time.tv_nsec);
}

/// Measures only the time of `work`, for one iteration: setup and cleanup cost more than the work itself. In addition
/// to the elapsed time it records the processor time as the counter "cpu" (milliseconds per iteration), which depends
/// little on the load of the machine.
template <typename Work>
void measure(benchmark::State& state, Work&& work)
{
    const double cpuBegin = threadSeconds();
    const auto begin = std::chrono::steady_clock::now();
    work();
    const auto end = std::chrono::steady_clock::now();
    const double cpuEnd = threadSeconds();
    state.SetIterationTime(std::chrono::duration<double>(end - begin).count());
    benchmark::Counter& cpu = state.counters["cpu"];
    cpu.flags = benchmark::Counter::kAvgIterations;
    cpu.value += 1e3 * (cpuEnd - cpuBegin);
}

/// Runs a program, which must succeed, and measures its time; the processor time includes its children.
void measureCommand(benchmark::State& state, const std::vector<std::string>& command);

inline void inMilliseconds(benchmark::internal::Benchmark* added)
{
    added->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace lapsa::bench

/// The largest size, which shows how the cost per item grows: a single run, because it takes so long.
#define LAPSA_GROWTH_BENCHMARK(FUNCTION, NAME)                                                                         \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000000)->Iterations(1)->Repetitions(1)->Apply(lapsa::bench::inMilliseconds)

/// NAME is "operation/lapsa" or "operation/peer"; runs of the same size are side by side in the table of ratios.
#define LAPSA_BENCHMARK(FUNCTION, NAME)                                                                                \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(5)->Apply(lapsa::bench::inMilliseconds);                    \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                   \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                  \
    LAPSA_GROWTH_BENCHMARK(FUNCTION, NAME)

/// For short operations in memory: whether the memory was used before matters as much as the work.
#define LAPSA_QUICK_BENCHMARK(FUNCTION, NAME)                                                                          \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(50)->Apply(lapsa::bench::inMilliseconds);                   \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(20)->Apply(lapsa::bench::inMilliseconds);                  \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(3)->Apply(lapsa::bench::inMilliseconds);                  \
    LAPSA_GROWTH_BENCHMARK(FUNCTION, NAME)

/// Other programs: they are slow, so the largest size runs once, however many repetitions are requested.
#define LAPSA_COMMAND_BENCHMARK(FUNCTION, NAME)                                                                        \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                    \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                   \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(1)->Repetitions(1)->Apply(lapsa::bench::inMilliseconds)
