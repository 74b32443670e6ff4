// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "Injection.h"

#include <QByteArray>
#include <QList>

#include <functional>

namespace lapsa::test {

/// What the file systems of a run can do.
enum class Abilities
{
    All,
    /// No unnamed files, no renaming without replacing, no copying in the kernel.
    Plain,
    /// No hard links either.
    Poor,
};

/// How a process ended that something was injected into.
struct RunEnd
{
    enum class How
    {
        Finished,
        /// By the injected kill.
        Killed,
        Crashed,
        Hung,
    };

    How how = How::Crashed;
    /// The exit code, or the signal of a crash.
    int code = 0;
    /// Whether the injection's call was reached.
    bool injected = false;
    /// The name of that call, with its path where it has one.
    QByteArray where = {};
    int calls = 0;
    /// Every call, where they were asked for.
    QList<QByteArray> listed = {};
};

/// Runs `work` in a process of its own, whose exit code is what `work` returns. Until `work` calls stopAtTracedCalls()
/// nothing is injected.
[[nodiscard]] RunEnd runTraced(const std::function<int()>& work, const Injection& injection, Abilities abilities,
                               bool listCalls = false);

/// The same without any tracing.
[[nodiscard]] RunEnd runApart(const std::function<int()>& work);

} // namespace lapsa::test
