// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "Compositing.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace lapsa {

using namespace Qt::StringLiterals;

namespace {

template <typename T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

/// The number in DISPLAY, of a server that has several screens.
int screenNumber()
{
    char* name = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &name, &display, &screen);
    const Reply<char> host(name, &std::free);
    return screen;
}

/// "The compositing manager owns the selection _NET_WM_CM_Sn" (Extended Window Manager Hints).
bool selectionOwned(xcb_connection_t* connection, const QByteArray& selection)
{
    const auto atomCookie =
        xcb_intern_atom(connection, false, static_cast<std::uint16_t>(selection.size()), selection.constData());
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomCookie, nullptr), &std::free);
    if (!atom) {
        return false;
    }
    const auto ownerCookie = xcb_get_selection_owner(connection, atom->atom);
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(connection, ownerCookie, nullptr),
                                                       &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool compositingAvailable()
{
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Without a screen the toolkit may say it is on X11, but has no connection.
    if (xcb_connection_t* const connection = x11 != nullptr ? x11->connection() : nullptr) {
        return selectionOwned(connection, "_NET_WM_CM_S" + QByteArray::number(screenNumber()));
    }
    return QGuiApplication::platformName().startsWith("wayland"_L1);
}

} // namespace lapsa
