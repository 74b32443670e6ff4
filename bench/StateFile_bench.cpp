// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "BenchFiles.h"
#include "FileSystem.h"
#include "JSONEncoder.h"
#include "Measured.h"
#include "TemporaryHome.h"

#include <fcntl.h>
#include <simdjson.h>
#include <unistd.h>

#include <cstdio>

namespace lapsa::bench {

using namespace Qt::StringLiterals;

namespace {

QList<LapsaItem> someItems(std::int64_t count)
{
    const QStringList paths = pathsOf({.count = count, .spread = Spread::ManyFolders}, u"/home/somebody/Downloads"_s);
    QList<LapsaItem> items;
    items.reserve(count);
    for (const QString& path : paths) {
        items.push_back({.id = newItemId(),
                         .path = path,
                         .displayName = path.mid(path.lastIndexOf(u'/') + 1),
                         .addedAt = TimePoint(std::chrono::hours{490000}),
                         .expiresAt = TimePoint(std::chrono::hours{490002})});
    }
    return items;
}

/// The program's start with a list of that length, from reading the settings to the last purge.
void loadItems(benchmark::State& state)
{
    const QByteArray json = JSONEncoder::lapsa().encode(someItems(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        world.world.stop();
        world.world.home.writeDataFile(u"state.json"_s, json);
        measure(state, [&] { world.world.start(); });
        require(world.store().items().size() == state.range(0), "loading");
    }
}

/// Only reads and parses the file into the library's own tree, without making records.
void parseAlone(benchmark::State& state)
{
    const QByteArray json = JSONEncoder::lapsa().encode(someItems(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        world.world.home.writeDataFile(u"state.json"_s, json);
        const std::string path = world.world.home.dataPath(u"state.json"_s).toStdString();
        std::size_t found = 0;
        measure(state, [&] {
            simdjson::dom::parser parser;
            found = parser.load(path).get_array().value_unsafe().size();
        });
        require(found == static_cast<std::size_t>(std::min<std::int64_t>(state.range(0), 0xFFFFFF)), "parsing");
    }
}

void saveItems(benchmark::State& state)
{
    const QByteArray json = JSONEncoder::lapsa().encode(someItems(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        world.world.stop();
        world.world.home.writeDataFile(u"state.json"_s, json);
        world.world.start();
        measure(state, [&] { world.store().saveNow(); });
        require(world.world.home.dataFile(u"state.json"_s) == json, "saving what was loaded");
    }
}

void writeDurably(const std::string& folder, const char* name, QByteArrayView bytes)
{
    const std::string path = folder + '/' + name;
    const std::string temporary = path + ".new";
    const int file = ::open(temporary.c_str(), O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600);
    require(file >= 0, "opening");
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t step = ::write(file, bytes.data() + written, static_cast<std::size_t>(bytes.size() - written));
        require(step > 0, "writing");
        written += step;
    }
    require(::fsync(file) == 0 && ::close(file) == 0, "syncing");
    require(std::rename(temporary.c_str(), path.c_str()) == 0, "renaming");
    const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(directory >= 0 && ::fsync(directory) == 0 && ::close(directory) == 0, "syncing the folder");
}

/// Only writes the same bytes, made beforehand, and the empty recovery list that every save writes too.
void writeAlone(benchmark::State& state)
{
    const QByteArray json = JSONEncoder::lapsa().encode(someItems(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        BenchWorld world;
        const std::string folder = world.world.home.makeFolder(u"target"_s).toStdString();
        measure(state, [&] {
            writeDurably(folder, "state.json", json);
            writeDurably(folder, "recovery.json", "[\n\n]");
        });
    }
}

/// Only encodes the items.
void encodeItems(benchmark::State& state)
{
    const QList<LapsaItem> items = someItems(state.range(0));
    for ([[maybe_unused]] auto iteration : state) {
        QByteArray json;
        measure(state, [&] { json = JSONEncoder::lapsa().encode(items); });
        require(json.size() > items.size(), "encoding");
    }
}

/// The library's own writer, from its own tree.
void minifyAlone(benchmark::State& state)
{
    const QByteArray json = JSONEncoder::lapsa().encode(someItems(state.range(0)));
    simdjson::dom::parser parser;
    const simdjson::dom::element tree =
        parser.parse(json.constData(), static_cast<std::size_t>(json.size())).value_unsafe();
    for ([[maybe_unused]] auto iteration : state) {
        std::string text;
        measure(state, [&] { text = simdjson::minify(tree); });
        require(!text.empty(), "writing the tree");
    }
}

/// Only copies the bytes in memory.
void copyAlone(benchmark::State& state)
{
    const QByteArray json = JSONEncoder::lapsa().encode(someItems(state.range(0)));
    for ([[maybe_unused]] auto iteration : state) {
        QByteArray copy;
        measure(state, [&] { copy = QByteArray(json.constData(), json.size()); });
        require(copy.size() == json.size(), "copying");
    }
}

constexpr qsizetype durableSize = 300'000;

void saveDurably(benchmark::State& state)
{
    const QByteArray bytes(durableSize, 'x');
    for ([[maybe_unused]] auto iteration : state) {
        const test::TemporaryHome home;
        const QString path = home.makeFile(u"target/state.json"_s);
        measure(state, [&] {
            for (std::int64_t i = 0; i < state.range(0); ++i) {
                require(fileSystem::writeAtomically(path, bytes).has_value(), "saving");
            }
        });
    }
}

void saveDurablyBare(benchmark::State& state)
{
    const QByteArray bytes(durableSize, 'x');
    for ([[maybe_unused]] auto iteration : state) {
        const test::TemporaryHome home;
        const std::string folder = home.makeFolder(u"target"_s).toStdString();
        measure(state, [&] {
            for (std::int64_t i = 0; i < state.range(0); ++i) {
                writeDurably(folder, "state.json", bytes);
            }
        });
    }
}

BENCHMARK(saveDurably)->Name("durable save of 300 KB/lapsa")->Arg(100)->Iterations(1)->Apply(inMilliseconds);
BENCHMARK(saveDurablyBare)
    ->Name("durable save of 300 KB/write, fsync, rename, fsync")
    ->Arg(100)
    ->Iterations(1)
    ->Apply(inMilliseconds);
LAPSA_QUICK_BENCHMARK(copyAlone, "encode the items/memcpy of the bytes");
LAPSA_QUICK_BENCHMARK(loadItems, "load state.json/lapsa");
LAPSA_QUICK_BENCHMARK(parseAlone, "load state.json/read and parse, simdjson");
LAPSA_BENCHMARK(saveItems, "save state.json/lapsa");
LAPSA_BENCHMARK(writeAlone, "save state.json/write, fsync, rename, fsync");
LAPSA_QUICK_BENCHMARK(encodeItems, "encode the items/lapsa");
LAPSA_QUICK_BENCHMARK(minifyAlone, "encode the items/write its own tree, simdjson");

} // namespace

} // namespace lapsa::bench
