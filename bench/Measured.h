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

/// Counts the time of `work` alone, of one iteration: what is made before and removed after costs more than what is
/// measured. Beside the time that passes, the processor's time is kept as the counter "cpu" (milliseconds of one
/// iteration): it hardly minds what else the machine has to do.
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

/// Runs a program, which must succeed, and counts its time: of the processor, that of the program and its children.
void measureCommand(benchmark::State& state, const std::vector<std::string>& command);

inline void inMilliseconds(benchmark::internal::Benchmark* added)
{
    added->UseManualTime()->Unit(benchmark::kMillisecond);
}

} // namespace lapsa::bench

/// The largest size, which shows how the cost of one item grows: a single run, since it takes so long.
#define LAPSA_GROWTH_BENCHMARK(FUNCTION, NAME)                                                                         \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000000)->Iterations(1)->Repetitions(1)->Apply(lapsa::bench::inMilliseconds)

/// NAME is "operation/lapsa" or "operation/peer"; the runs of one size stand side by side in the table of ratios.
#define LAPSA_BENCHMARK(FUNCTION, NAME)                                                                                \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(5)->Apply(lapsa::bench::inMilliseconds);                    \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                   \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                  \
    LAPSA_GROWTH_BENCHMARK(FUNCTION, NAME)

/// For what takes little time in memory: whether the memory was used before counts for as much as the work.
#define LAPSA_QUICK_BENCHMARK(FUNCTION, NAME)                                                                          \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(50)->Apply(lapsa::bench::inMilliseconds);                   \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(20)->Apply(lapsa::bench::inMilliseconds);                  \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(3)->Apply(lapsa::bench::inMilliseconds);                  \
    LAPSA_GROWTH_BENCHMARK(FUNCTION, NAME)

/// Other programs: those that take long are run once at the largest size, whatever is asked of the others.
#define LAPSA_COMMAND_BENCHMARK(FUNCTION, NAME)                                                                        \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(1000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                    \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(10000)->Iterations(1)->Apply(lapsa::bench::inMilliseconds);                   \
    BENCHMARK(FUNCTION)->Name(NAME)->Arg(100000)->Iterations(1)->Repetitions(1)->Apply(lapsa::bench::inMilliseconds)
