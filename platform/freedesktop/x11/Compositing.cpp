// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Compositing.h"

#include "X11Screen.h"

#include <QGuiApplication>

namespace lapsa {

using namespace Qt::StringLiterals;

bool compositingAvailable()
{
    if (xcb_connection_t* const connection = x11Connection()) {
        // "The compositing manager owns the selection _NET_WM_CM_Sn" (Extended Window Manager Hints).
        return x11ManagerOf(connection, "_NET_WM_CM_S") != XCB_WINDOW_NONE;
    }
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

} // namespace lapsa
