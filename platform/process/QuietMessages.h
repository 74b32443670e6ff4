// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

namespace lapsa {

/// From now on the toolkit keeps its remarks to itself: standard error belongs to systemLog(). What is fatal to the
/// toolkit, a display that cannot be reached for example, becomes one line there and ends the process with status 1
/// until `startupDone`, later with an abort that leaves a trace.
class QuietMessages final
{
public:
    static void install();
    static void startupDone();
};

} // namespace lapsa
