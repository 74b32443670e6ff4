// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

// Measures the longest time between two turns of the main loop while the engine works as in the program. Writes a table
// to standard output. --items COUNT, --tree COUNT and --full MEBIBYTES set the sizes; other arguments choose situations
// by a part of their names.

#include "BenchFiles.h"
#include "LiveEngine.h"
#include "Privileges.h"
#include "SteeredDisk.h"
#include "TurnProbe.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::bench {

namespace {

struct Sizes
{
    std::int64_t items = 100'000;
    std::int64_t tree = 100'000;
    std::int64_t fullBytes = std::int64_t{2} << 30;
};

std::function<bool()> after(std::chrono::milliseconds time)
{
    return [time, since = std::make_shared<QElapsedTimer>()] {
        if (!since->isValid()) {
            since->start();
        }
        return since->hasExpired(time.count());
    };
}

/// What the main loop goes through. Prints one row.
void report(const char* name, LiveEngine& engine, const std::function<void()>& begin,
            const std::function<bool()>& isOver)
{
    constexpr auto patience = 30min;
    engine.start();
    TurnProbe probe;
    std::ignore = probe.measure([] {}, after(1s), patience); // what the start leaves to do
    const Turns turns = probe.measure(begin, isOver, patience);
    std::printf("| %s | %.1f | %.1f | %zu | %.1f |\n", name, turns.p999, turns.longest, turns.count,
                turns.whole / 1000);
    std::fflush(stdout);
}

std::function<bool()> listIsEmpty(LiveEngine& engine)
{
    return [&engine] { return engine.store().items().isEmpty(); };
}

void nothingToDo(const Sizes&)
{
    LiveEngine engine;
    report(
        "nothing", engine, [] {}, after(10s));
}

void add(const char* name, const Sizes& sizes, bool listed)
{
    LiveEngine engine;
    const QStringList paths = pathsOf({.count = sizes.items}, engine.home().path(u"files"_s));
    createFiles(paths);
    const QList<QUrl> urls = urlsOf(paths);
    engine.list(listed ? paths : QStringList(), 60);
    bool added = false;
    report(
        name, engine, [&] { engine.store().addFiles(urls, {}, [&](const AddResult&) { added = true; }); },
        [&] { return added && engine.store().items().size() == sizes.items; });
}

void adding(const Sizes& sizes)
{
    add("many files added", sizes, false);
}

void addingAgain(const Sizes& sizes)
{
    add("many listed files added again", sizes, true);
}

void due(const char* name, const Sizes& sizes, const std::function<void(LapsaSettings&)>& way)
{
    LiveEngine engine;
    const QStringList paths = pathsOf({.count = sizes.items}, engine.home().path(u"files"_s));
    createFiles(paths);
    engine.list(paths, -1);
    engine.set(way);
    report(
        name, engine, [&] { engine.pass(); }, listIsEmpty(engine));
}

void dueToRecovery(const Sizes& sizes)
{
    due("many items due at once, to Recovery", sizes, [](LapsaSettings&) {});
}

void dueForGood(const Sizes& sizes)
{
    due("many items due at once, for good", sizes, [](LapsaSettings& settings) {
        settings.useRecoveryWindow = false;
        settings.useTrash = false;
    });
}

void dueFoldersBeside(const Sizes& sizes)
{
    LiveEngine engine;
    const QStringList paths =
        pathsOf({.count = sizes.items, .spread = Spread::ManyFolders}, engine.home().path(u"files"_s));
    createFiles(paths);
    // The items in the folders leave the list with them.
    QStringList folders;
    for (const QString& path : paths) {
        const QString folder = path.left(path.lastIndexOf(u'/'));
        if (folders.isEmpty() || folders.constLast() != folder) {
            folders.push_back(folder);
        }
    }
    engine.list(folders + paths, -1);
    report(
        "folders and what is in them due at once", engine, [&] { engine.pass(); }, listIsEmpty(engine));
}

void warnings(const Sizes& sizes)
{
    LiveEngine engine;
    engine.list(pathsOf({.count = sizes.items}, engine.home().path(u"files"_s)), 3);
    report(
        "many items warned about", engine, [&] { engine.pass(); },
        [&] { return std::ranges::all_of(engine.store().items(), &LapsaItem::fiveMinuteWarningSent); });
}

void copying(const char* name, const std::function<void(const QString& path)>& make)
{
    const QTemporaryDir other(otherFileSystem() + u"/lapsa-bench-XXXXXX"_s);
    const QString path = other.filePath(u"large.dat"_s);
    make(path);
    LiveEngine engine;
    engine.list({path}, -1);
    report(
        name, engine, [&] { engine.pass(); }, listIsEmpty(engine));
}

void copyOfSparse(const Sizes&)
{
    constexpr std::int64_t bytes = 20'000'000'000;
    copying("20 GB copied to another disk, sparse", [](const QString& path) {
        createFiles({path});
        require(::truncate(path.toUtf8().constData(), bytes) == 0, "making a sparse file");
    });
}

void copyOfFull(const Sizes& sizes)
{
    const QByteArray name =
        QByteArray::number(double(sizes.fullBytes) / 1e9, 'f', 1) + " GB copied to another disk, full";
    copying(name.constData(), [&](const QString& path) { createLargeFile(path, sizes.fullBytes); });
}

void treeRemoved(const Sizes& sizes)
{
    LiveEngine engine;
    const QString tree = engine.home().path(u"tree"_s);
    createFiles(pathsOf({.count = sizes.tree, .spread = Spread::ManyFolders}, tree));
    engine.list({tree}, -1);
    engine.set([](LapsaSettings& settings) {
        settings.useRecoveryWindow = false;
        settings.useTrash = false;
    });
    const QByteArray name = "a tree of " + QByteArray::number(sizes.tree) + " files removed for good";
    report(
        name.constData(), engine, [&] { engine.pass(); }, listIsEmpty(engine));
}

void watch(const LiveEngine& engine, int folders)
{
    engine.set([&engine, folders](LapsaSettings& settings) {
        for (int number = 0; number < folders; ++number) {
            settings.autoCleanFolders.push_back(
                {.folderPath = engine.home().makeFolder(u"disk/watched %1"_s.arg(number)),
                 .includeExistingFiles = true});
        }
    });
}

/// A pass every second while the disk is dead; then it answers again.
void deadDisk(const char* name, int folders)
{
    if (!test::SteeredDisk::available()) {
        return;
    }
    const test::PrivateMounts mounts;
    LiveEngine engine;
    test::SteeredDisk disk(engine.home().path(u"real"_s), engine.home().path(u"disk"_s));
    constexpr std::int64_t onDisk = 2000;
    const QStringList remote = pathsOf({.count = onDisk}, engine.home().path(u"disk"_s));
    const QStringList local = pathsOf({.count = onDisk}, engine.home().path(u"files"_s));
    createFiles(remote + local);
    engine.list(remote + local, -1);
    watch(engine, folders);
    QTimer passes;
    QElapsedTimer dead;
    passes.callOnTimeout([&] { engine.pass(); });
    disk.answerAfter(1ms);
    report(
        name, engine,
        [&] {
            engine.pass();
            passes.start(1s);
        },
        [&] {
            if (!dead.isValid() && QFileInfo::exists(engine.home().dataPath(u"Recovery/file-1999.dat"_s))) {
                disk.stopAnswering();
                dead.start();
            }
            if (dead.isValid() && dead.hasExpired(15'000)) {
                disk.answerAgain();
                disk.answerAfter(0ms);
            }
            return engine.store().items().isEmpty();
        });
}

void dyingDisk(const Sizes&)
{
    deadDisk("a disk that stops answering in the middle", 0);
}

void watchedOnDyingDisk(const Sizes&)
{
    deadDisk("the same, and 100 folders watched on it", 100);
}

int run(const QStringList& arguments)
{
    Sizes sizes;
    QStringList chosen;
    for (qsizetype next = 1; next < arguments.size(); ++next) {
        const QString& argument = arguments[next];
        const auto number = [&] { return next + 1 < arguments.size() ? arguments[++next].toLongLong() : 0; };
        if (argument == u"--items") {
            sizes.items = number();
        } else if (argument == u"--tree") {
            sizes.tree = number();
        } else if (argument == u"--full") {
            sizes.fullBytes = number() << 20;
        } else {
            chosen.push_back(argument);
        }
    }
    const std::vector<std::pair<QString, void (*)(const Sizes&)>> situations = {
        {u"nothing"_s, nothingToDo}, {u"adding"_s, adding},           {u"adding again"_s, addingAgain},
        {u"due"_s, dueToRecovery},   {u"due for good"_s, dueForGood}, {u"due folders"_s, dueFoldersBeside},
        {u"warnings"_s, warnings},   {u"sparse"_s, copyOfSparse},     {u"full"_s, copyOfFull},
        {u"tree"_s, treeRemoved},    {u"dead"_s, dyingDisk},          {u"watched"_s, watchedOnDyingDisk}};
    std::printf("| what Lapsa does (%lld items) | p99.9 between turns, ms | longest, ms | turns | took, s |\n"
                "|---|--:|--:|--:|--:|\n",
                static_cast<long long>(sizes.items));
    for (const auto& [name, situation] : situations) {
        if (chosen.isEmpty() || chosen.contains(name)) {
            situation(sizes);
        }
    }
    return 0;
}

} // namespace

} // namespace lapsa::bench

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return lapsa::bench::run(QCoreApplication::arguments());
}
