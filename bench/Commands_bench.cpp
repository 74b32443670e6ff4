// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// The commands that users and administrators use for the same work.

#include "BenchFiles.h"
#include "CleanupService.h"
#include "Measured.h"
#include "TemporaryHome.h"

#include <QDir>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

double childrenSeconds()
{
    rusage usage = {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval& time) { return double(time.tv_sec) + 1e-6 * double(time.tv_usec); };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Runs a command on files in a home of its own; afterwards they must be gone from their folder.
void commandTakesAll(benchmark::State& state,
                     const std::function<std::vector<std::string>(const std::string&)>& command)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QStringList paths = pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s));
        createFiles(paths);
        world.world.home.makeFolder(u"target"_s);
        measureCommand(state, command(world.world.home.path({}).toStdString()));
        require(::access(paths.back().toUtf8().constData(), F_OK) != 0, "taking the files away");
    }
}

void moveByCommand(benchmark::State& state)
{
    commandTakesAll(state, [](const std::string& home) -> std::vector<std::string> {
        return {"find", home + "/files/folder", "-type", "f", "-exec", "mv", "-n", "-t", home + "/target", "{}", "+"};
    });
}

void trashByGio(benchmark::State& state)
{
    commandTakesAll(state, [](const std::string& home) -> std::vector<std::string> {
        return {"find", home + "/files/folder", "-type", "f", "-exec", "gio", "trash", "{}", "+"};
    });
}

void trashByTrashPut(benchmark::State& state)
{
    commandTakesAll(state, [](const std::string& home) -> std::vector<std::string> {
        return {"find", home + "/files/folder", "-type", "f", "-exec", "trash-put", "{}", "+"};
    });
}

void removeByFind(benchmark::State& state)
{
    commandTakesAll(state, [](const std::string& home) -> std::vector<std::string> {
        return {"find", home + "/files/folder", "-delete"};
    });
}

void removeByTmpfiles(benchmark::State& state)
{
    commandTakesAll(state, [](const std::string& home) -> std::vector<std::string> {
        // An age of 0: everything in the folder.
        const std::string rule = "d " + home + "/files/folder - - - 0";
        return {"sh", "-c", "printf '%s\\n' \"$0\" | systemd-tmpfiles --clean -", rule};
    });
}

constexpr Layout treeOf(std::int64_t count)
{
    return {.count = count, .spread = Spread::ManyFolders};
}

void removeTreeByLapsa(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QString tree = world.world.home.path(u"files"_s);
        createFiles(pathsOf(treeOf(state.range(0)), tree));
        LapsaSettings settings = world.store().settings();
        settings.useRecoveryWindow = false;
        settings.useTrash = false;
        world.store().setSettings(settings);
        world.store().addFiles({QUrl::fromLocalFile(tree)}, {.fixedLifespan = 10});
        world.world.time.setClock(world.world.time.now() + 11min);
        measure(state, [&] { world.store().deleteExpiredItems(); });
        require(::access(tree.toUtf8().constData(), F_OK) != 0, "taking the tree away");
    }
}

void removeTreeByFind(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const QString tree = world.world.home.path(u"files"_s);
        createFiles(pathsOf(treeOf(state.range(0)), tree));
        measureCommand(state, {"find", tree.toStdString(), "-delete"});
        require(::access(tree.toUtf8().constData(), F_OK) != 0, "taking the tree away");
    }
}

void listByFind(benchmark::State& state)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        createFiles(pathsOf({.count = state.range(0)}, world.world.home.path(u"files"_s)));
        const std::string folder = world.world.home.path(u"files/folder"_s).toStdString();
        measureCommand(state, {"sh", "-c", "find \"$0\" -maxdepth 1 -printf '%p %B@\\n' >/dev/null", folder});
    }
}

/// What to move from one file system to another: a folder with that many files, or one file of that many megabytes.
class Luggage final
{
public:
    explicit Luggage(const benchmark::State& state, bool oneFile)
        : m_folder(otherFileSystem() + u"/lapsa-bench-%1"_s.arg(::getpid()))
        , path(m_folder + u"/luggage"_s)
    {
        constexpr std::int64_t megabyte = 1 << 20;
        removeTree(m_folder);
        require(QDir().mkpath(m_folder), "making a folder");
        if (oneFile) {
            createLargeFile(path, state.range(0) * megabyte);
        } else {
            createFiles(pathsOf(treeOf(state.range(0)), path));
        }
        ::sync(); // so that writing it back is not measured below
    }

    Luggage(const Luggage&) = delete;
    Luggage& operator=(const Luggage&) = delete;

    ~Luggage() { removeTree(m_folder); }

private:
    QString m_folder;

public:
    QString path;
};

void crossByLapsa(benchmark::State& state, bool oneFile)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const Luggage luggage(state, oneFile);
        world.store().addFiles({QUrl::fromLocalFile(luggage.path)}, {.fixedLifespan = 10});
        world.world.time.setClock(world.world.time.now() + 11min);
        measure(state, [&] { world.store().deleteExpiredItems(); });
        require(::access(luggage.path.toUtf8().constData(), F_OK) != 0, "taking it away");
        require(world.store().recoveryItems().size() == 1, "recording the copy");
    }
}

void crossByMv(benchmark::State& state, bool oneFile)
{
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const Luggage luggage(state, oneFile);
        const std::string target = world.world.home.makeFolder(u"target"_s).toStdString();
        // With sync, because Lapsa reports a file as moved only when it is on disk.
        measureCommand(state, {"sh", "-c", "mv \"$0\" \"$1\" && sync -f \"$1\"", luggage.path.toStdString(), target});
        require(::access(luggage.path.toUtf8().constData(), F_OK) != 0, "taking it away");
    }
}

void crossWithAFile(benchmark::State& state)
{
    crossByLapsa(state, true);
}

void crossWithAFolder(benchmark::State& state)
{
    crossByLapsa(state, false);
}

void moveAFileAcross(benchmark::State& state)
{
    crossByMv(state, true);
}

void moveAFolderAcross(benchmark::State& state)
{
    crossByMv(state, false);
}

LAPSA_COMMAND_BENCHMARK(moveByCommand, "to Recovery, different names/mv");
LAPSA_COMMAND_BENCHMARK(trashByGio, "to the Trash/gio trash");
LAPSA_COMMAND_BENCHMARK(trashByTrashPut, "to the Trash/trash-put");
LAPSA_COMMAND_BENCHMARK(removeByFind, "removed for good/find -delete");
LAPSA_COMMAND_BENCHMARK(removeByTmpfiles, "removed for good/systemd-tmpfiles --clean");
LAPSA_BENCHMARK(removeTreeByLapsa, "a tree removed for good/lapsa");
LAPSA_COMMAND_BENCHMARK(removeTreeByFind, "a tree removed for good/find -delete");
LAPSA_COMMAND_BENCHMARK(listByFind, "scan, all known/find -printf");
BENCHMARK(crossWithAFile)->Name("2 GB to another file system/lapsa")->Arg(2000)->Iterations(1)->Apply(inMilliseconds);
BENCHMARK(moveAFileAcross)
    ->Name("2 GB to another file system/mv, sync")
    ->Arg(2000)
    ->Iterations(1)
    ->Apply(inMilliseconds);
BENCHMARK(crossWithAFolder)
    ->Name("a folder to another file system/lapsa")
    ->Arg(20000)
    ->Iterations(1)
    ->Apply(inMilliseconds);
BENCHMARK(moveAFolderAcross)
    ->Name("a folder to another file system/mv, sync")
    ->Arg(20000)
    ->Iterations(1)
    ->Apply(inMilliseconds);

} // namespace

void measureCommand(benchmark::State& state, const std::vector<std::string>& command)
{
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str())); // NOLINT: the call does not write to it
    }
    arguments.push_back(nullptr);
    const double cpuBegin = childrenSeconds();
    const auto begin = std::chrono::steady_clock::now();
    pid_t child = 0;
    require(::posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0,
            "starting a program");
    int status = 0;
    require(::waitpid(child, &status, 0) == child && status == 0, command[0].c_str());
    const auto end = std::chrono::steady_clock::now();
    state.SetIterationTime(std::chrono::duration<double>(end - begin).count());
    benchmark::Counter& cpu = state.counters["cpu"];
    cpu.flags = benchmark::Counter::kAvgIterations;
    cpu.value += 1e3 * (childrenSeconds() - cpuBegin);
}

} // namespace lapsa::bench
