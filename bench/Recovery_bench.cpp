// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BenchFiles.h"
#include "Measured.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// All of Recovery at once, as by Ctrl+A and "Put back".
void putBackByLapsa(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = world.addFiles({.count = state.range(0)});
        world.world.time.setClock(world.world.time.now() + 11min);
        world.store().deleteExpiredItems();
        QList<QUuid> ids;
        for (const LapsaRecoveryItem& record : world.store().recoveryItems()) {
            ids.push_back(record.id);
        }
        require(ids.size() == paths.size(), "parking");
        measure(state, [&] { world.store().putBack(ids); });
        require(world.store().recoveryItems().isEmpty(), "dropping the records");
        require(::access(paths.back().toUtf8().constData(), F_OK) == 0, "putting back");
    }
}

/// One `renameat2` per file, to names that are known to be free.
void putBackByRename(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const std::vector<std::string> from =
            nativePaths(pathsOf({.count = state.range(0)}, world.world.home.path(u"recovery"_s)));
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(pathsOf({.count = state.range(0)}, world.world.home.path(u"recovery"_s)));
        createFiles({paths.front()});
        ::unlink(paths.front().toUtf8().constData()); // its folder stays
        const std::vector<std::string> to = nativePaths(paths);
        std::size_t moved = 0;
        measure(state, [&] {
            for (std::size_t number = 0; number < from.size(); ++number) {
                if (::renameat2(AT_FDCWD, from[number].c_str(), AT_FDCWD, to[number].c_str(), RENAME_NOREPLACE) == 0) {
                    ++moved;
                }
            }
        });
        require(moved == from.size(), "renaming");
    }
}

void putBackByMv(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        const std::string home = world.world.home.path({}).toStdString();
        world.world.home.makeFolder(u"target"_s);
        measureCommand(state, {"find", home + "/files/folder", "-type", "f", "-exec", "mv", "-n", "-t",
                               home + "/target", "{}", "+"});
        require(::access(paths.back().toUtf8().constData(), F_OK) != 0, "moving");
    }
}

LAPSA_BENCHMARK(putBackByLapsa, "put back from Recovery/lapsa");
LAPSA_BENCHMARK(putBackByRename, "put back from Recovery/renameat2 loop");
LAPSA_COMMAND_BENCHMARK(putBackByMv, "put back from Recovery/mv");

} // namespace

} // namespace lapsa::bench
