// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FocusProbe.h"

// Ends when the window manager of the display is ready, for scripts.
int main()
{
    lapsa::test::awaitWindowManager();
    return 0;
}
