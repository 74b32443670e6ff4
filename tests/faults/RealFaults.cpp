// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "RealFaults.h"

#include "FaultWorld.h"

#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>

namespace lapsa::test {

using namespace Qt::StringLiterals;

namespace {

constexpr unsigned long blockSize = 4096;

const Scenario& scenarioNamed(const QByteArray& name)
{
    const auto found = std::ranges::find(scenarios(), name, &Scenario::name);
    if (found == scenarios().end()) {
        qFatal("there is no %s", name.constData());
    }
    return *found;
}

unsigned long usedBlocks(const QString& place)
{
    struct statvfs status = {};
    ::statvfs(place.toUtf8().constData(), &status);
    return (status.f_blocks - status.f_bfree) * status.f_frsize / blockSize;
}

/// A scenario and the side of the world whose room it takes.
struct Writer
{
    const char* scenario;
    bool ontoVolume = false;
    /// With so many free blocks everything has room.
    int mostBlocks = 0;
};

constexpr Writer writers[] = {
    {.scenario = "first-start", .mostBlocks = 8},
    {.scenario = "add", .mostBlocks = 8},
    {.scenario = "settings", .mostBlocks = 8},
    {.scenario = "trash-file", .mostBlocks = 12},
    {.scenario = "recovery-file@volume", .mostBlocks = 24},
    {.scenario = "recovery-file@volume@plain", .mostBlocks = 24},
    {.scenario = "recovery-folder@volume", .mostBlocks = 72},
    {.scenario = "restore-file@volume", .ontoVolume = true, .mostBlocks = 20},
    {.scenario = "restore-folder@volume", .ontoVolume = true, .mostBlocks = 72},
};

struct MountFault
{
    const char* scenario;
    /// What becomes a mount of its own, from the base of the world.
    const char* folder;
    bool readOnly = true;
};

constexpr MountFault mountFaults[] = {
    {.scenario = "recovery-file", .folder = "home/Documents"},
    {.scenario = "recovery-file", .folder = "home/.local/share/Lapsa"},
    {.scenario = "recovery-file", .folder = "home/.local/share/Lapsa/Recovery"},
    {.scenario = "recovery-file", .folder = "home/.local/share/Lapsa/Recovery", .readOnly = false},
    {.scenario = "recovery-folder", .folder = "home/.local/share/Lapsa/Recovery", .readOnly = false},
    {.scenario = "recovery-folder", .folder = "home/Documents/Project/sub"},
    {.scenario = "recovery-folder", .folder = "home/Documents/Project/sub/deep", .readOnly = false},
    {.scenario = "recovery-file@volume", .folder = "volume/Documents"},
    {.scenario = "recovery-folder@volume", .folder = "volume/Documents"},
    {.scenario = "recovery-folder@volume", .folder = "home/.local/share/Lapsa/Recovery"},
    {.scenario = "trash-file", .folder = "home/.local/share"},
    {.scenario = "trash-file@volume", .folder = "volume/Documents"},
    {.scenario = "remove-folder", .folder = "home/Documents/Project/sub"},
    {.scenario = "remove-folder", .folder = "home/Documents/Project/sub", .readOnly = false},
    {.scenario = "restore-file", .folder = "home/Documents"},
    {.scenario = "restore-file", .folder = "home/Documents", .readOnly = false},
    {.scenario = "restore-folder@volume", .folder = "volume/Documents"},
    {.scenario = "purge-folder", .folder = "home/.local/share/Lapsa/Recovery"},
};

struct RightsFault
{
    const char* scenario;
    const char* folder;
    mode_t mode;
};

constexpr RightsFault rightsFaults[] = {
    {"recovery-file", "home/Documents", 0555},
    {"recovery-file", "home/Documents", 0000},
    {"recovery-file", "home/.local/share/Lapsa", 0555},
    {"recovery-file", "home/.local/share/Lapsa/Recovery", 0555},
    {"recovery-file", "home/.local/share/Lapsa/Recovery", 0000},
    {"recovery-file@volume", "home/.local/share/Lapsa/Recovery", 0333},
    {"recovery-file@volume", "volume/Documents", 0555},
    {"recovery-file@volume", "home/.local/share/Lapsa/Recovery", 0555},
    {"recovery-folder", "home/Documents/Project", 0555},
    {"recovery-folder@volume", "volume/Documents/Project/sub", 0555},
    {"recovery-folder@volume", "volume/Documents/Project/sub", 0000},
    {"recovery-folder@volume", "volume/Documents/Project/sub/deep", 0111},
    {"trash-file", "home/.local/share", 0555},
    {"trash-file", "home/Documents", 0555},
    {"trash-file@volume", "volume", 0555},
    {"remove-folder", "home/Documents/Project/sub", 0555},
    {"remove-folder", "home/Documents/Project/sub/deep", 0000},
    {"restore-file", "home/Documents", 0555},
    {"restore-folder@volume", "volume/Documents", 0555},
    {"purge-folder", "home/.local/share/Lapsa/Recovery/Project/sub", 0555},
};

} // namespace

Figures runOnFullDisks(const FaultWorld& world, int every)
{
    Figures sum;
    for (const Writer& writer : writers) {
        const QString place = writer.ontoVolume ? world.volume() : world.home();
        Campaign campaign(world, scenarioNamed(writer.scenario));
        for (int blocks = 0; blocks <= writer.mostBlocks; blocks += every) {
            const auto fill = [&] {
                const unsigned long size = (usedBlocks(place) + static_cast<unsigned long>(blocks)) * blockSize;
                // Nothing at all would mean: no bound.
                world.resize(place, QByteArray::number(qulonglong(std::max(size, blockSize))));
            };
            const QByteArray name = "full disk, free blocks: " + QByteArray::number(blocks);
            sum += campaign.runUnder(name, {}, fill, [&] { world.resize(place, "64m"); });
        }
    }
    return sum;
}

Figures runOnOtherMounts(const FaultWorld& world)
{
    Figures sum;
    for (const MountFault& fault : mountFaults) {
        const QByteArray folder = world.base() + '/' + fault.folder;
        const auto mount = [&] {
            const bool mounted =
                ::mount(folder.constData(), folder.constData(), nullptr, MS_BIND, nullptr) == 0 &&
                (!fault.readOnly || ::mount(nullptr, folder.constData(), nullptr,
                                            MS_BIND | MS_REMOUNT | MS_RDONLY | MS_NODEV, nullptr) == 0);
            if (!mounted) {
                qFatal("cannot mount %s", folder.constData());
            }
        };
        const auto unmount = [&] { ::umount2(folder.constData(), MNT_DETACH); };
        Campaign campaign(world, scenarioNamed(fault.scenario));
        const QByteArray kind = fault.readOnly ? "read-only mount: " : "another mount: ";
        sum += campaign.runUnder(kind + fault.folder, {}, mount, unmount);
    }
    return sum;
}

Figures runWithoutRights(const FaultWorld& world)
{
    Figures sum;
    for (const RightsFault& fault : rightsFaults) {
        const QByteArray folder = world.base() + '/' + fault.folder;
        const auto forbid = [&] { ::chmod(folder.constData(), fault.mode); };
        const auto permit = [&] { ::chmod(folder.constData(), 0700); };
        Campaign campaign(world, scenarioNamed(fault.scenario));
        const QByteArray mode = QByteArray::number(fault.mode, 8).rightJustified(4, '0');
        sum += campaign.runUnder("mode " + mode + ": " + fault.folder, {}, forbid, permit);
    }
    return sum;
}

} // namespace lapsa::test
