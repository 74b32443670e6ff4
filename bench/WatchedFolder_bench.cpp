// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BenchFiles.h"
#include "Measured.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace lapsa::bench {

using namespace Qt::StringLiterals;

namespace {

void watch(BenchWorld& world)
{
    LapsaSettings settings = world.store().settings();
    settings.autoCleanFolders = {
        {.folderPath = world.world.home.path(u"files/folder"_s), .includeExistingFiles = true}};
    world.store().setSettings(settings);
}

void scanOfKnownFiles(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = world.addFiles({.count = state.range(0)});
        watch(world);
        measure(state, [&] {
            world.store().scanAutoCleanFolders();
            world.world.time.settle();
        });
        require(world.store().items().size() == paths.size(), "finding nothing new");
    }
}

void scanOfNewFiles(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        watch(world);
        measure(state, [&] {
            world.store().scanAutoCleanFolders();
            world.world.time.settle();
        });
        require(world.store().items().size() == paths.size(), "taking every file");
    }
}

/// Lists the folder, and calls `statx` for every entry if `look` is set.
void listing(benchmark::State& state, bool look)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        createFiles(pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s)));
        const std::string folder = world.world.home.path(u"files/folder"_s).toStdString();
        std::int64_t found = 0;
        measure(state, [&] {
            DIR* stream = ::opendir(folder.c_str());
            require(stream != nullptr, "opening the folder");
            while (const dirent* entry = ::readdir(stream)) {
                struct statx status = {};
                if (entry->d_name[0] != '.' &&
                    (!look || ::statx(::dirfd(stream), entry->d_name, 0, STATX_TYPE | STATX_BTIME, &status) == 0)) {
                    ++found;
                }
            }
            ::closedir(stream);
        });
        require(found == state.range(0), "listing");
    }
}

void readdirAlone(benchmark::State& state)
{
    listing(state, false);
}

void readdirAndStatx(benchmark::State& state)
{
    listing(state, true);
}

LAPSA_BENCHMARK(scanOfKnownFiles, "scan, all known/lapsa");
LAPSA_BENCHMARK(readdirAlone, "scan, all known/readdir loop");
LAPSA_BENCHMARK(scanOfNewFiles, "scan, all new/lapsa");
LAPSA_BENCHMARK(readdirAndStatx, "scan, all new/readdir and statx loop");

} // namespace

} // namespace lapsa::bench
