// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Taskbar.h"

#include "X11Screen.h"

#include <QWindow>

#include <array>
#include <cstdint>

namespace lapsa {

void keepOutOfTaskbars(const QWindow& window)
{
    xcb_connection_t* const connection = x11Connection();
    if (connection == nullptr) {
        return;
    }
    // The toolkit adds its own to the states that it finds ("_NET_WM_STATE", Extended Window Manager Hints).
    const std::array states{x11ExistingAtom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                            x11ExistingAtom(connection, "_NET_WM_STATE_SKIP_PAGER")};
    const xcb_atom_t property = x11ExistingAtom(connection, "_NET_WM_STATE");
    if (property != XCB_ATOM_NONE && states[0] != XCB_ATOM_NONE && states[1] != XCB_ATOM_NONE) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), property,
                            XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(states.size()), states.data());
    }
}

} // namespace lapsa
