// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

namespace lapsa {

/// The toolkit's own connection to the X server; null on every other platform, and without a screen.
[[nodiscard]] xcb_connection_t* x11Connection();

/// An atom that exists already; XCB_ATOM_NONE otherwise.
[[nodiscard]] xcb_atom_t x11ExistingAtom(xcb_connection_t* connection, const QByteArray& name);

/// Who owns the manager selection of the screen that DISPLAY names, for example "_NET_SYSTEM_TRAY_S" for the tray
/// (Inter-Client Communication Conventions Manual, 2.8); XCB_WINDOW_NONE where nobody does.
[[nodiscard]] xcb_window_t x11ManagerOf(xcb_connection_t* connection, const QByteArray& selection);

} // namespace lapsa
