// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Drops the toolkit's messages: standard error belongs to systemLog(). A fatal message, such as about a display that
/// cannot be reached, becomes one line there and ends the process: with status 1 until `startupDone`, later with an
/// abort that leaves a core dump.
///
/// Global, because a message handler of the toolkit is one plain function for the process and is passed no context.
class QuietMessages final
{
public:
    static void install();
    static void startupDone();
};

} // namespace lapsa
