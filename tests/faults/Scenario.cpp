// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Scenario.h"

#include "FaultProgram.h"
#include "FaultWorld.h"
#include "FileTree.h"
#include "UserFiles.h"

#include <QDir>

#include <sys/stat.h>

namespace lapsa::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Desk = Scenario::Desk;

void recoveryFirst(LapsaSettings& settings)
{
    settings.useRecoveryWindow = true;
}

void trashOnly(LapsaSettings& settings)
{
    settings.useRecoveryWindow = false;
    settings.useTrash = true;
}

void forGood(LapsaSettings& settings)
{
    settings.useRecoveryWindow = false;
    settings.useTrash = false;
}

using ItemOperation = std::function<void(LapsaStore&, const LapsaItem&)>;
using CopyOperation = std::function<void(LapsaStore&, const LapsaRecoveryItem&)>;

/// On the newest item, if a fault has left one.
void onLastItem(FaultProgram& program, const ItemOperation& operation)
{
    program.change([&operation](LapsaStore& store) {
        if (!store.items().isEmpty()) {
            operation(store, LapsaItem(store.items().back()));
        }
    });
}

void onLastCopy(FaultProgram& program, const CopyOperation& operation)
{
    program.change([&operation](LapsaStore& store) {
        if (!store.recoveryItems().isEmpty()) {
            operation(store, LapsaRecoveryItem(store.recoveryItems().back()));
        }
    });
}

/// Files on countdown whose time will be up, beside one that is locked; one of the names is taken in Recovery.
Scenario::Step filesOnCountdown(void (*settings)(LapsaSettings&))
{
    return [settings](FaultProgram& program, const Desk& desk) {
        makeUserFile(desk.path(u"Canary/canary.txt"_s));
        makeUserFile(desk.path(u"earlier/report.pdf"_s), 90);
        program.load();
        program.add({desk.path(u"earlier/report.pdf"_s)});
        program.letTimePass(1min);
        program.pass();
        QStringList paths;
        for (const QString& name : oddNames()) {
            paths += desk.path(name);
            makeUserFile(paths.back(), 20'000);
        }
        makeUserFile(desk.path(u"locked.txt"_s));
        program.add(paths << desk.path(u"locked.txt"_s));
        onLastItem(program, &LapsaStore::toggleLock);
        program.changeSettings(settings);
        program.quit();
    };
}

Scenario::Step folderOnCountdown(void (*settings)(LapsaSettings&))
{
    return [settings](FaultProgram& program, const Desk& desk) {
        makeUserFile(desk.path(u"Canary/canary.txt"_s));
        makeUserFolder(desk.path(u"Project"_s));
        program.load();
        program.add({desk.path(u"Project"_s)});
        program.changeSettings(settings);
        program.quit();
    };
}

/// Everything that the preparation puts on countdown goes to Recovery; the places are taken by others meanwhile.
Scenario::Step parked(const Scenario::Step& before)
{
    return [before](FaultProgram& program, const Desk& desk) {
        before(program, desk);
        program.letTimePass(1min);
        program.pass();
        makeUserFile(desk.path(u"report.pdf"_s), 70);
        makeUserFile(desk.path(u"Project-2"_s), 80);
        program.quit();
    };
}

void pass(FaultProgram& program, const Desk&)
{
    program.pass();
    program.quit();
}

void restoreAll(FaultProgram& program, const Desk&)
{
    const QList<LapsaRecoveryItem> copies = program.store().recoveryItems();
    for (const LapsaRecoveryItem& copy : copies) {
        program.change([&copy](LapsaStore& store) { store.restoreRecoveryItem(copy); });
    }
    program.quit();
}

void deleteLast(FaultProgram& program, const Desk&)
{
    onLastCopy(program, &LapsaStore::deleteRecoveryItem);
    program.quit();
}

void startAndQuit(FaultProgram& program, const Desk&)
{
    program.start();
    program.quit();
}

void leaveTraces(FaultProgram& program, const Desk& desk)
{
    parked(filesOnCountdown(recoveryFirst))(program, desk);
    const QByteArray data = desk.world.dataFolder().toUtf8();
    makeRawFile(data + "/.state.json.0123456789abcdef.tmp", "[{");
    const QByteArray copy = data + "/Recovery/.lapsa-copy-0123456789abcdef";
    makeRawFile(copy, "a part of");
    ::chmod(copy.constData(), S_ISVTX | S_IRWXU);
}

void addTwoAndTakeOneOff(FaultProgram& program, const Desk& desk)
{
    program.add({desk.path(u"report.pdf"_s), desk.path(u"Project-2"_s)});
    onLastItem(program, &LapsaStore::toggleLock);
    onLastItem(program, [](LapsaStore& store, const LapsaItem& item) { store.updateExpiration(item, 90); });
    onLastItem(program, &LapsaStore::removeFromList);
    program.quit();
}

void watchAndScan(FaultProgram& program, const Desk& desk)
{
    program.changeSettings([&](LapsaSettings& settings) {
        settings.autoCleanFolders = {{.folderPath = desk.documents, .includeExistingFiles = true}};
    });
    program.pass();
    program.quit();
}

void changeSettingsTwice(FaultProgram& program, const Desk&)
{
    program.changeSettings(trashOnly);
    program.changeSettings([](LapsaSettings& settings) { settings.theme = LapsaTheme::Dark; });
    program.quit();
}

/// One of everything, from the start to the end.
void wholeDay(FaultProgram& program, const Desk& desk)
{
    program.start();
    program.add({desk.path(u"locked.txt"_s), desk.path(u"Canary/canary.txt"_s)});
    program.letTimePass(2min);
    program.pass();
    onLastCopy(program, &LapsaStore::restoreRecoveryItem);
    program.changeSettings(trashOnly);
    onLastItem(program, [](LapsaStore& store, const LapsaItem& item) { store.deleteNow(item); });
    program.quit();
}

Scenario onVolume(Scenario scenario)
{
    scenario.name += "@volume";
    scenario.onVolume = true;
    return scenario;
}

Scenario with(Scenario scenario, Abilities abilities)
{
    scenario.name += abilities == Abilities::Plain ? "@plain" : "@poor";
    scenario.abilities = abilities;
    return scenario;
}

std::vector<Scenario> ofTheProgram()
{
    const Scenario::Step files = filesOnCountdown(recoveryFirst);
    return {
        {.name = "first-start", .prepare = {}, .act = startAndQuit, .startsInside = true, .firstStart = true},
        {.name = "start", .prepare = leaveTraces, .act = startAndQuit, .startsInside = true},
        {.name = "add", .prepare = parked(folderOnCountdown(recoveryFirst)), .act = addTwoAndTakeOneOff},
        {.name = "watch", .prepare = parked(files), .act = watchAndScan},
        {.name = "settings", .prepare = files, .act = changeSettingsTwice},
        {.name = "day", .prepare = files, .act = wholeDay, .startsInside = true, .restores = true},
    };
}

std::vector<Scenario> ofTheFiles()
{
    const Scenario::Step files = filesOnCountdown(recoveryFirst);
    const Scenario::Step folder = folderOnCountdown(recoveryFirst);
    constexpr auto retention = 25h;
    return {
        {.name = "recovery-file", .prepare = files, .act = pass},
        {.name = "recovery-folder", .prepare = folder, .act = pass},
        {.name = "trash-file", .prepare = filesOnCountdown(trashOnly), .act = pass},
        {.name = "trash-folder", .prepare = folderOnCountdown(trashOnly), .act = pass},
        {.name = "remove-file", .prepare = filesOnCountdown(forGood), .act = pass, .mayGo = oddNames()},
        {.name = "remove-folder", .prepare = folderOnCountdown(forGood), .act = pass, .mayGo = {u"Project"_s}},
        {.name = "restore-file", .prepare = parked(files), .act = restoreAll, .restores = true},
        {.name = "restore-folder", .prepare = parked(folder), .act = restoreAll, .restores = true},
        {.name = "purge-file",
         .prepare = parked(files),
         .act = startAndQuit,
         .startsInside = true,
         .mayGoFromRecovery = oddNames() << u"report-1.pdf"_s,
         .later = retention},
        {.name = "purge-folder",
         .prepare = parked(folder),
         .act = startAndQuit,
         .startsInside = true,
         .mayGoFromRecovery = {u"Project"_s},
         .later = retention},
        {.name = "delete-copy", .prepare = parked(folder), .act = deleteLast, .mayGoFromRecovery = {u"Project"_s}},
    };
}

std::vector<Scenario> allScenarios()
{
    std::vector<Scenario> all = ofTheProgram();
    for (const Scenario& scenario : ofTheFiles()) {
        all.push_back(scenario);
        all.push_back(onVolume(scenario));
        if (scenario.name.startsWith("recovery") || scenario.name.startsWith("restore")) {
            all.push_back(with(onVolume(scenario), Abilities::Plain));
            all.push_back(with(onVolume(scenario), Abilities::Poor));
        }
        if (scenario.name.endsWith("file") && !scenario.name.startsWith("remove")) {
            all.push_back(with(scenario, Abilities::Plain));
            all.push_back(with(scenario, Abilities::Poor));
        }
    }
    return all;
}

} // namespace

Scenario::Desk Scenario::desk(const FaultWorld& world) const
{
    return {.world = world, .documents = (onVolume ? world.volume() : world.home()) + u"/Documents"_s};
}

const std::vector<Scenario>& scenarios()
{
    static const std::vector<Scenario> all = allScenarios();
    return all;
}

} // namespace lapsa::test
