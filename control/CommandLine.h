// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace lapsa {

/// What the arguments of `lapsactl` ask for.
struct CommandLine
{
    enum class Verb
    {
        Help,
        Version,
        Add,
        List,
        Lock,
        Unlock,
        Remove,
        Recovered,
        PutBack,
    };

    Verb verb = Verb::Help;
    /// For Add; 0 means by rule.
    int minutes = 0;
    bool json = false;
    /// Files, or names of items or records.
    QStringList names;
    /// Why the arguments are wrong, in the user's language; the rest means nothing then.
    QString error = {};
};

/// Reads the arguments after the program's name.
[[nodiscard]] CommandLine readCommandLine(const QList<QByteArray>& arguments);

/// The minutes of a lifespan such as "2h", "90min" or "1d12h": 1 to 525600. Nothing for any other text.
[[nodiscard]] std::optional<int> minutesOf(const QString& lifespan);

/// The text of `--help`, in the user's language.
[[nodiscard]] QString helpText();

} // namespace lapsa
