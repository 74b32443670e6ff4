// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

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
    int jobs = 2;
    /// Only this scenario, or one of the other rows of the table.
    QByteArray scenario = {};
    /// Only this injection.
    QByteArray only = {};
    /// Shows each call of one run.
    bool calls = false;
    bool list = false;
    /// Where the worlds are made.
    QString folder = QDir::tempPath();

    /// Nothing where something is wrong with them.
    [[nodiscard]] static std::optional<Options> of(int count, char* arguments[]);
};

} // namespace lapsa::test
