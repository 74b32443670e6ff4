// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// Drops the toolkit's messages: standard error belongs to systemLog(). A fatal message, such as an unreachable
/// display, becomes one line there and ends the process: with status 1 before `startupDone`, afterwards with an abort
/// that leaves a core dump.
///
/// Static, because the toolkit has one message handler per process, a plain function without context.
class QuietMessages final
{
public:
    static void install();
    static void startupDone();
};

} // namespace lapsa
