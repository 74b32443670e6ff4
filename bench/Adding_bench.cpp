// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BenchFiles.h"
#include "Measured.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace lapsa::bench {

using namespace Qt::StringLiterals;

namespace {

void addNewFiles(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        const QList<QUrl> urls = urlsOf(paths);
        measure(state, [&] {
            world.store().addFiles(urls);
            world.world.time.settle();
        });
        require(world.store().items().size() == paths.size(), "adding");
    }
}

void addKnownFiles(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = world.addFiles({.count = state.range(0)});
        const QList<QUrl> urls = urlsOf(paths);
        measure(state, [&] {
            world.store().addFiles(urls);
            world.world.time.settle();
        });
        require(world.store().items().size() == paths.size(), "adding again");
    }
}

/// The minimum cost of adding a file: one check whether it exists.
void statxEach(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        const std::vector<std::string> native = nativePaths(paths);
        std::size_t found = 0;
        measure(state, [&] {
            for (const std::string& path : native) {
                struct statx status = {};
                if (::statx(AT_FDCWD, path.c_str(), 0, STATX_TYPE, &status) == 0) {
                    ++found;
                }
            }
        });
        require(found == native.size(), "statx");
    }
}

LAPSA_BENCHMARK(addNewFiles, "add new files/lapsa");
LAPSA_BENCHMARK(statxEach, "add new files/one statx each");
LAPSA_BENCHMARK(addKnownFiles, "add known files/lapsa");
LAPSA_BENCHMARK(statxEach, "add known files/one statx each");

} // namespace

} // namespace lapsa::bench
