// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>

#include <cstdint>

namespace lapsa {

enum class DolphinOutcome
{
    Copied,
    /// Dolphin does not know the window, or does not answer: the request was not made.
    NotAsked,
    /// Dolphin was asked, but did not confirm in time.
    Unanswered,
};

/// Makes one window of Dolphin copy its selection, over the session bus: Control+C would interrupt the program in
/// Dolphin's built-in terminal.
[[nodiscard]] DolphinOutcome copyInDolphin(std::uint32_t processId, std::uint32_t window,
                                           const QDeadlineTimer& deadline);

} // namespace lapsa
