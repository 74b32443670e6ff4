// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>

namespace lapsa {

class WindowSystem;

/// The picture that greets at launch: it fades in, stays, and fades out.
class SplashWindowController final
{
public:
    SplashWindowController() = delete;

    /// Returns at once; the rest happens by itself. The window is gone 0.28 seconds after `duration`, and nothing of it
    /// remains.
    static void showSplash(std::chrono::duration<double> duration, const WindowSystem& windowSystem);
};

} // namespace lapsa
