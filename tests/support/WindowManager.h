// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"

namespace lapsa::test {

/// A real window manager (xfwm4) on the display and the session bus that the environment names; without a bus, where
/// its settings are, newer versions do not start. It is there once this is constructed: a window that is shown before
/// gets no focus from it.
class WindowManager final
{
public:
    WindowManager();

private:
    HelperProcess m_process;
};

} // namespace lapsa::test
