// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "TracedRun.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <vector>

namespace lapsa::test {

class FaultProgram;
class FaultWorld;

/// Something that the program does with files, from a prepared beginning on.
struct Scenario
{
    /// Where the user's files lie and what is done to them.
    struct Desk
    {
        const FaultWorld& world;
        /// The folder of the user's files.
        QString documents;

        [[nodiscard]] QString path(const QString& relative) const { return documents + u'/' + relative; }
    };

    using Step = std::function<void(FaultProgram&, const Desk&)>;

    QByteArray name;
    /// Puts files in their places and the program's own into the data folder.
    Step prepare;
    Step act;
    /// Whether the user's files lie on the second volume.
    bool onVolume = false;
    Abilities abilities = Abilities::All;
    /// Whether faults meet the start of the program too.
    bool startsInside = false;
    /// Whether the data folder has yet to be made.
    bool firstStart = false;
    /// Whether files come back into the user's folder, under any name.
    bool restores = false;
    /// Names in the user's folder that the settings let go for good.
    QStringList mayGo = {};
    /// Names in `Recovery` that the retention, or the user, lets go for good.
    QStringList mayGoFromRecovery = {};
    /// How much later than the preparation the rest happens.
    std::chrono::minutes later{2};

    [[nodiscard]] Desk desk(const FaultWorld& world) const;

    /// Whether a file gets a second name or copy before the first one goes, so that a kill can leave both.
    [[nodiscard]] bool mayDouble() const { return onVolume || abilities != Abilities::All; }
};

[[nodiscard]] const std::vector<Scenario>& scenarios();

} // namespace lapsa::test
