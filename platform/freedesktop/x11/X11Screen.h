// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

namespace lapsa {

/// The toolkit's own connection to the X server; null on every other platform, and without a screen.
[[nodiscard]] xcb_connection_t* x11Connection();

/// An existing atom; XCB_ATOM_NONE if there is none of this name.
[[nodiscard]] xcb_atom_t x11ExistingAtom(xcb_connection_t* connection, const QByteArray& name);

/// The name of a manager selection of the screen named by DISPLAY: "_NET_WM_CM_S0".
[[nodiscard]] QByteArray x11SelectionOfScreen(const QByteArray& selection);

/// The owner of the manager selection of the screen named by DISPLAY, for example "_NET_SYSTEM_TRAY_S" for the tray
/// (Inter-Client Communication Conventions Manual, 2.8); XCB_WINDOW_NONE without an owner.
[[nodiscard]] xcb_window_t x11ManagerOf(xcb_connection_t* connection, const QByteArray& selection);

/// How the window manager names itself (_NET_SUPPORTING_WM_CHECK, Extended Window Manager Hints); empty without one.
[[nodiscard]] QByteArray x11WindowManagerName(xcb_connection_t* connection);

} // namespace lapsa
