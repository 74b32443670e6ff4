// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "EngineLanes.h"

#include <QByteArray>
#include <QDir>
#include <QString>

#include <optional>

namespace lapsa::test {

/// What the command line asks for.
struct Options
{
    /// A selection that takes a minute or two.
    bool briefly = false;
    /// So many times fewer points than otherwise, for a build that is slow.
    int thin = 1;
    /// Each `every`-th fault, 0 for the usual selection. Kills are all run, unless `briefly`.
    int every = 0;
    /// Each so many-th power cut, 0 for the usual selection. With a scenario, nothing but its power cuts is run.
    int cuts = 0;
    int jobs = 2;
    /// With threads, as the real program works; then it is also ended at each call.
    bool threads = false;
    /// Only this scenario, or one of the other rows of the table.
    QByteArray scenario = {};
    /// Only this injection.
    QByteArray only = {};
    /// Shows each call of one run.
    bool calls = false;
    bool list = false;
    /// Where the worlds are made.
    QString folder = QDir::tempPath();

    [[nodiscard]] EngineLanes::Threads lanes() const
    {
        return threads ? EngineLanes::Threads::Yes : EngineLanes::Threads::No;
    }

    /// Nothing where something is wrong with them.
    [[nodiscard]] static std::optional<Options> of(int count, char* arguments[]);
};

} // namespace lapsa::test
