// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace lapsa {

/// What the X server answers; freed as its library asks.
template <typename T>
using X11Reply = std::unique_ptr<T, decltype(&std::free)>;

template <typename T>
[[nodiscard]] X11Reply<T> x11Reply(T* reply)
{
    return {reply, &std::free};
}

/// The toolkit's own connection to the X server; null on every other platform, and without a screen.
[[nodiscard]] xcb_connection_t* x11Connection();

/// An atom that exists already; XCB_ATOM_NONE otherwise.
[[nodiscard]] xcb_atom_t x11ExistingAtom(xcb_connection_t* connection, const QByteArray& name);

/// Who owns the manager selection of the screen that DISPLAY names, for example "_NET_SYSTEM_TRAY_S" for the tray
/// (Inter-Client Communication Conventions Manual, 2.8); XCB_WINDOW_NONE where nobody does.
[[nodiscard]] xcb_window_t x11ManagerOf(xcb_connection_t* connection, const QByteArray& selection);

} // namespace lapsa
