// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PowerCuts.h"

#include "DiskPair.h"
#include "FaultWorld.h"

#include <cstdio>

namespace lapsa::test {

Figures runPowerCuts(const FaultWorld& world, const CutSelection& selection)
{
    Figures sum;
    const std::unique_ptr<DiskPair> disks = DiskPair::mountedIn(world);
    if (!disks) {
        if (selection.worker == 0) {
            std::printf("Left out, for want of root, loop devices or XFS: power-cuts\n");
        }
        return sum;
    }
    const auto before = [&] {
        disks->sync();
        disks->startCommits();
    };
    const auto cut = [&] { disks->cutPower(); };
    int point = 0;
    for (const Scenario& scenario : scenarios()) {
        const bool isWanted = selection.scenario.isEmpty() || selection.scenario == scenario.name;
        if (!isWanted || scenario.abilities != Abilities::All) {
            continue;
        }
        Campaign campaign(world, scenario);
        const Figures atEnd = campaign.runUnder("power cut at the end", {}, before, cut);
        if (selection.worker == 0) {
            sum += atEnd;
        }
        for (int call = 1; call <= atEnd.calls; ++call) {
            for (const auto kind : {Injection::Kind::KillBefore, Injection::Kind::KillAfter}) {
                const int number = point++;
                if (number % selection.every == 0 && number / selection.every % selection.jobs == selection.worker) {
                    sum += campaign.runUnder("power cut", {.kind = kind, .call = call}, before, cut);
                }
            }
        }
    }
    return sum;
}

} // namespace lapsa::test
