// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>

namespace lapsa {

class WindowSystem;

/// The splash picture at launch: it fades in, stays, and fades out.
class SplashWindowController final
{
public:
    SplashWindowController() = delete;

    /// Returns at once. The window is hidden and destroyed 0.28 seconds after `duration`.
    static void showSplash(std::chrono::duration<double> duration, const WindowSystem& windowSystem);
};

} // namespace lapsa
