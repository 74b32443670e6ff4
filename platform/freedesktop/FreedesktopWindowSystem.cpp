// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FreedesktopWindowSystem.h"

#include "KWinCompositing.h"
#include "X11ManagerWatch.h"
#include "X11Screen.h"

#include <QGuiApplication>
#include <QWindow>

#include <array>
#include <cstdint>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

/// "The compositing manager owns the selection _NET_WM_CM_Sn" (Extended Window Manager Hints).
const QByteArray compositingSelection = "_NET_WM_CM_S";

} // namespace

FreedesktopWindowSystem::FreedesktopWindowSystem()
    : m_compositingManager(std::make_unique<X11ManagerWatch>(compositingSelection))
    , m_kwin(std::make_unique<KWinCompositing>())
{
    connect(m_compositingManager.get(), &X11ManagerWatch::ownerChanged, this, &WindowSystem::compositingChanged);
    connect(m_kwin.get(), &KWinCompositing::activeChanged, this, &WindowSystem::compositingChanged);
}

FreedesktopWindowSystem::~FreedesktopWindowSystem() = default;

bool FreedesktopWindowSystem::compositingAvailable() const
{
    if (xcb_connection_t* const connection = x11Connection()) {
        return x11ManagerOf(connection, compositingSelection) != XCB_WINDOW_NONE && m_kwin->active().value_or(true);
    }
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

/// Sway and its kin put the windows of XWayland in the middle. Their common library names itself as the window manager.
bool FreedesktopWindowSystem::honoursPlaces() const
{
    if (xcb_connection_t* const connection = x11Connection()) {
        return x11WindowManagerName(connection) != "wlroots wm";
    }
    return !QGuiApplication::platformName().startsWith("wayland"_L1);
}

void FreedesktopWindowSystem::keepOutOfTaskbars(const QWindow& window)
{
    xcb_connection_t* const connection = x11Connection();
    if (connection == nullptr) {
        return;
    }
    // The toolkit keeps existing states and adds its own ("_NET_WM_STATE", Extended Window Manager Hints).
    const std::array states{x11ExistingAtom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                            x11ExistingAtom(connection, "_NET_WM_STATE_SKIP_PAGER")};
    const xcb_atom_t property = x11ExistingAtom(connection, "_NET_WM_STATE");
    if (property != XCB_ATOM_NONE && states[0] != XCB_ATOM_NONE && states[1] != XCB_ATOM_NONE) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), property,
                            XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(states.size()), states.data());
    }
}

} // namespace lapsa
