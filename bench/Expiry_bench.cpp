// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BenchFiles.h"
#include "CleanupService.h"
#include "Measured.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

enum class Disposal
{
    Recovery,
    Trash,
    ForGood,
};

void choose(Disposal disposal, LapsaStore& store)
{
    LapsaSettings settings = store.settings();
    settings.useRecoveryWindow = disposal == Disposal::Recovery;
    settings.useTrash = disposal == Disposal::Trash;
    store.setSettings(settings);
}

/// A complete cleanup pass over items that have all become due.
void passWithAllDue(benchmark::State& state, Disposal disposal, Names names, Spread spread)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        choose(disposal, world.store());
        const QStringList paths = world.addFiles({.count = state.range(0), .names = names, .spread = spread});
        // Only the clock: no save may become due meanwhile.
        world.world.time.setClock(world.world.time.now() + 11min);
        test::RecordingWarnings warnings;
        CleanupService service(world.store(), warnings, {.clock = world.world.time, .mainQueue = world.world.time});
        measure(state, [&] { service.tick(); });
        const qsizetype recovered = disposal == Disposal::Recovery ? paths.size() : 0;
        require(world.store().items().isEmpty(), "disposing of every item");
        require(world.store().recoveryItems().size() == recovered, "recording every copy");
        require(::access(paths.back().toUtf8().constData(), F_OK) != 0, "taking the files away");
    }
}

void passWithNothingDue(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        world.addFiles({.count = state.range(0)});
        test::RecordingWarnings warnings;
        CleanupService service(world.store(), warnings, {.clock = world.world.time, .mainQueue = world.world.time});
        measure(state, [&] { service.tick(); });
        require(world.store().items().size() == state.range(0), "leaving what is not due");
    }
}

/// Copies as many bytes as the records have: any pass has to read them.
void copyOfTheRecords(benchmark::State& state)
{
    const std::vector<char> records(static_cast<std::size_t>(state.range(0)) * sizeof(LapsaItem), 'x');
    std::vector<char> copy(records.size());
    for ([[maybe_unused]] auto iteration : state) {
        measure(state, [&] { std::memcpy(copy.data(), records.data(), records.size()); });
        benchmark::DoNotOptimize(copy.data());
    }
}

/// Paths in a folder that are known to be free.
std::vector<std::string> freePaths(const BenchWorld& world, std::size_t count, const QString& folder,
                                   const std::string& ending)
{
    const std::string target = world.world.home.makeFolder(folder).toStdString();
    std::vector<std::string> paths;
    paths.reserve(count);
    for (std::size_t number = 0; number < count; ++number) {
        paths.push_back(target + "/report-" + std::to_string(number) + ending);
    }
    return paths;
}

/// One `renameat2` per file, to names that are known to be free.
void bareRenames(benchmark::State& state, Names names, Spread spread)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths =
            pathsOf({.count = state.range(0), .names = names, .spread = spread}, world.world.home.path(u"files"_s));
        createFiles(paths);
        const std::vector<std::string> from = nativePaths(paths);
        const std::vector<std::string> to = freePaths(world, from.size(), u"target"_s, ".pdf");
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

/// The minimum for the Trash: a new record is created and written for each file, then one `renameat2`.
void recordsAndRenames(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        const std::vector<std::string> from = nativePaths(paths);
        const std::vector<std::string> to = freePaths(world, from.size(), u"target"_s, ".pdf");
        const std::vector<std::string> records = freePaths(world, from.size(), u"records"_s, ".pdf.trashinfo");
        std::size_t moved = 0;
        measure(state, [&] {
            for (std::size_t number = 0; number < from.size(); ++number) {
                const std::string text = "[Trash Info]\nPath=" + from[number] + "\nDeletionDate=2026-01-31T12:00:00\n";
                const int record = ::open(records[number].c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
                const bool written = ::write(record, text.data(), text.size()) == ssize_t(text.size());
                ::close(record);
                if (written &&
                    ::renameat2(AT_FDCWD, from[number].c_str(), AT_FDCWD, to[number].c_str(), RENAME_NOREPLACE) == 0) {
                    ++moved;
                }
            }
        });
        require(moved == from.size(), "recording and renaming");
    }
}

void bareUnlinks(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        const std::vector<std::string> native = nativePaths(paths);
        std::size_t removed = 0;
        measure(state, [&] {
            for (const std::string& path : native) {
                if (::unlink(path.c_str()) == 0) {
                    ++removed;
                }
            }
        });
        require(removed == native.size(), "unlinking");
    }
}

void recoverDifferent(benchmark::State& state)
{
    passWithAllDue(state, Disposal::Recovery, Names::Different, Spread::OneFolder);
}

void recoverFromManyFolders(benchmark::State& state)
{
    passWithAllDue(state, Disposal::Recovery, Names::Different, Spread::ManyFolders);
}

void recoverEqual(benchmark::State& state)
{
    passWithAllDue(state, Disposal::Recovery, Names::Equal, Spread::ManyFolders);
}

void trashAll(benchmark::State& state)
{
    passWithAllDue(state, Disposal::Trash, Names::Different, Spread::OneFolder);
}

void trashFromManyFolders(benchmark::State& state)
{
    passWithAllDue(state, Disposal::Trash, Names::Different, Spread::ManyFolders);
}

void trashEqual(benchmark::State& state)
{
    passWithAllDue(state, Disposal::Trash, Names::Equal, Spread::ManyFolders);
}

void removeAll(benchmark::State& state)
{
    passWithAllDue(state, Disposal::ForGood, Names::Different, Spread::OneFolder);
}

void renamesFromOneFolder(benchmark::State& state)
{
    bareRenames(state, Names::Different, Spread::OneFolder);
}

void renamesFromManyFolders(benchmark::State& state)
{
    bareRenames(state, Names::Different, Spread::ManyFolders);
}

void renamesFromOwnFolders(benchmark::State& state)
{
    bareRenames(state, Names::Equal, Spread::ManyFolders);
}

LAPSA_BENCHMARK(passWithNothingDue, "pass with nothing due/lapsa");
LAPSA_BENCHMARK(copyOfTheRecords, "pass with nothing due/memcpy of the records");
LAPSA_BENCHMARK(recoverDifferent, "to Recovery, different names/lapsa");
LAPSA_BENCHMARK(renamesFromOneFolder, "to Recovery, different names/renameat2 loop");
LAPSA_BENCHMARK(recoverFromManyFolders, "to Recovery, from many folders/lapsa");
LAPSA_BENCHMARK(renamesFromManyFolders, "to Recovery, from many folders/renameat2 loop");
LAPSA_BENCHMARK(recoverEqual, "to Recovery, equal names/lapsa");
LAPSA_BENCHMARK(renamesFromOwnFolders, "to Recovery, equal names/renameat2 loop");
LAPSA_BENCHMARK(trashAll, "to the Trash/lapsa");
LAPSA_BENCHMARK(recordsAndRenames, "to the Trash/record and rename loop");
LAPSA_BENCHMARK(renamesFromOneFolder, "to the Trash/renameat2 loop");
LAPSA_BENCHMARK(recoverDifferent, "to Recovery, equal names/different names");
LAPSA_BENCHMARK(trashEqual, "to the Trash, equal names/lapsa");
LAPSA_BENCHMARK(trashFromManyFolders, "to the Trash, equal names/different names");
LAPSA_BENCHMARK(removeAll, "removed for good/lapsa");
LAPSA_BENCHMARK(bareUnlinks, "removed for good/unlink loop");

} // namespace

} // namespace lapsa::bench
