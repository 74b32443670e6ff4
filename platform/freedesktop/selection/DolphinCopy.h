// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>

#include <cstdint>

namespace lapsa {

enum class DolphinOutcome
{
    Copied,
    /// It does not know the window, or does not answer: nothing has been asked.
    NotAsked,
    /// It has been asked, but did not say in time that it is done.
    Unanswered,
};

/// Makes one window of Dolphin copy what is selected in it, over the session bus: Control+C would be an interrupt for
/// the program in its terminal panel.
[[nodiscard]] DolphinOutcome copyInDolphin(std::uint32_t processId, std::uint32_t window,
                                           const QDeadlineTimer& deadline);

} // namespace lapsa
