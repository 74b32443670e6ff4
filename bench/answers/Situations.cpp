// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Situations.h"

#include "BenchFiles.h"
#include "FileName.h"
#include "JSONEncoder.h"
#include "LapsaItem.h"
#include "LapsaSettings.h"
#include "SteeredDisk.h"
#include "TemporaryHome.h"
#include "Time.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>

#include <unistd.h>

#include <chrono>
#include <optional>

namespace lapsa::bench {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::int64_t sparseBytes = 20'000'000'000;
constexpr std::int64_t inAnHour = 60;
constexpr std::int64_t due = -1;

/// The time of the items runs out in so many minutes; below 0, it has.
void list(const test::TemporaryHome& home, const QStringList& paths, std::int64_t minutes)
{
    const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    QList<LapsaItem> items;
    for (const QString& path : paths) {
        items.push_back({.id = newItemId(),
                         .path = path,
                         .displayName = lastPathComponent(path),
                         .addedAt = now,
                         .expiresAt = addingMinutes(now, minutes)});
    }
    home.writeDataFile(u"state.json"_s, JSONEncoder::lapsa().encode(items));
}

void set(const test::TemporaryHome& home, const std::function<void(LapsaSettings& settings)>& change)
{
    LapsaSettings settings = LapsaSettings::defaults();
    change(settings);
    home.writeDataFile(u"settings.json"_s, JSONEncoder::lapsa().encode(settings));
}

std::function<bool()> after(std::chrono::milliseconds time)
{
    return [time, since = std::make_shared<QElapsedTimer>()] {
        if (!since->isValid()) {
            since->start();
        }
        return since->hasExpired(time.count());
    };
}

/// Until the list on disk is empty.
std::function<bool()> untilNothingIsListed(const test::TemporaryHome& home)
{
    return [state = home.dataPath(u"state.json"_s)] {
        constexpr qint64 emptyList = 10; // bytes, at most
        return QFileInfo(state).size() < emptyList;
    };
}

Prepared nothing(const test::TemporaryHome& home)
{
    list(home, {}, inAnHour);
    return {.isOver = after(5s)};
}

Prepared manyItems(const test::TemporaryHome& home, std::int64_t count, std::int64_t minutes)
{
    const QStringList paths = pathsOf({.count = count}, home.path(u"files"_s));
    createFiles(paths);
    list(home, paths, minutes);
    return {.isOver = untilNothingIsListed(home)};
}

Prepared copy(const test::TemporaryHome& home, const std::function<void(const QString& path)>& make)
{
    const auto other = std::make_shared<QTemporaryDir>(otherFileSystem() + u"/lapsa-bench-XXXXXX"_s);
    const QString path = other->filePath(u"large.dat"_s);
    make(path);
    list(home, {path}, due);
    return {.isOver = untilNothingIsListed(home), .keeps = other};
}

void makeSparse(const QString& path)
{
    createFiles({path});
    require(::truncate(path.toUtf8().constData(), sparseBytes) == 0, "making a sparse file");
}

Prepared tree(const test::TemporaryHome& home, std::int64_t files)
{
    const QString folder = home.path(u"tree"_s);
    createFiles(pathsOf({.count = files, .spread = Spread::ManyFolders}, folder));
    list(home, {folder}, due);
    set(home, [](LapsaSettings& settings) {
        settings.useRecoveryWindow = false;
        settings.useTrash = false;
    });
    return {.isOver = untilNothingIsListed(home)};
}

constexpr std::int64_t onEachDisk = 2000;

/// Half of the items that are due are on a disk that is about to die, where folders are watched too.
std::shared_ptr<test::SteeredDisk> mountWithItems(const test::TemporaryHome& home)
{
    const auto disk = std::make_shared<test::SteeredDisk>(home.path(u"real"_s), home.path(u"disk"_s));
    const QStringList remote = pathsOf({.count = onEachDisk}, home.path(u"disk"_s));
    const QStringList local = pathsOf({.count = onEachDisk}, home.path(u"files"_s));
    createFiles(remote + local);
    list(home, remote + local, due);
    set(home, [&home](LapsaSettings& settings) {
        constexpr int folders = 100;
        for (int number = 0; number < folders; ++number) {
            settings.autoCleanFolders.push_back(
                {.folderPath = home.makeFolder(u"disk/watched %1"_s.arg(number)), .includeExistingFiles = true});
        }
    });
    return disk;
}

Prepared dyingDisk(const test::TemporaryHome& home)
{
    const auto disk = mountWithItems(home);
    disk->answerAfter(5ms);
    const auto isOver = [disk, dead = std::make_shared<QElapsedTimer>(), copies = home.dataPath(u"Recovery"_s)] {
        constexpr qint64 deadFor = 15'000;
        if (!dead->isValid() && QFileInfo::exists(copies + u"/file-100.dat"_s)) {
            disk->stopAnswering();
            dead->start();
        }
        const bool over = dead->isValid() && dead->hasExpired(deadFor);
        if (over) {
            disk->answerAgain(); // a process that waits for its disk does not end
        }
        return over;
    };
    return {.isOver = isOver, .keeps = disk};
}

Prepared deadDisk(const test::TemporaryHome& home)
{
    const auto disk = mountWithItems(home);
    disk->stopAnswering();
    const auto isOver = [disk, longEnough = after(15s)] {
        const bool over = longEnough();
        if (over) {
            disk->answerAgain();
        }
        return over;
    };
    return {.isOver = isOver, .keeps = disk};
}

/// Items that are not due, on a disk that does not answer.
Prepared listedOnDeadDisk(const test::TemporaryHome& home)
{
    constexpr std::int64_t items = 10;
    const auto disk = std::make_shared<test::SteeredDisk>(home.path(u"real"_s), home.path(u"disk"_s));
    const QStringList paths = pathsOf({.count = items}, home.path(u"disk"_s));
    createFiles(paths);
    list(home, paths, inAnHour);
    disk->stopAnswering();
    return {.isOver = after(1s), .keeps = disk};
}

} // namespace

std::vector<Situation> situations(const Sizes& sizes)
{
    const auto number = [](auto count) { return QString::number(count); };
    std::vector<Situation> all{
        {u"nothing"_s, nothing},
        {u"20 GB moved to another disk, sparse"_s,
         [](const test::TemporaryHome& home) { return copy(home, makeSparse); }},
        {number(double(sizes.fullBytes) / 1e9) + u" GB moved to another disk, full"_s,
         [sizes](const test::TemporaryHome& home) {
             return copy(home, [sizes](const QString& path) { createLargeFile(path, sizes.fullBytes); });
         }},
        {u"a tree of "_s + number(sizes.tree) + u" files removed for good"_s,
         [sizes](const test::TemporaryHome& home) { return tree(home, sizes.tree); }},
        {number(sizes.items) + u" items due at once"_s,
         [sizes](const test::TemporaryHome& home) { return manyItems(home, sizes.items, due); }}};
    if (test::SteeredDisk::available()) {
        all.push_back({u"a disk dies in the middle, with 100 watched folders"_s, dyingDisk});
        all.push_back({u"the same disk, dead before the start"_s, deadDisk});
    }
    return all;
}

std::vector<Situation> startSituations()
{
    constexpr std::int64_t items = 10'000;
    std::vector<Situation> all{
        {u"an empty list"_s, nothing},
        {u"10 000 items"_s, [](const test::TemporaryHome& home) { return manyItems(home, items, inAnHour); }},
        {u"a due file of 20 GB on another disk"_s,
         [](const test::TemporaryHome& home) { return copy(home, makeSparse); }}};
    if (test::SteeredDisk::available()) {
        all.push_back({u"items on a dead disk"_s, listedOnDeadDisk});
    }
    return all;
}

} // namespace lapsa::bench
