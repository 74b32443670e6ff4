// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11Tray.h"

#include "X11Screen.h"
#include "XcbPointer.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace lapsa {

namespace {

const QByteArray traySelection = "_NET_SYSTEM_TRAY_S";
/// Red, green and blue of the foreground; the colours for errors, warnings and success follow them.
using Foreground = std::array<std::uint32_t, 3>;

} // namespace

bool x11TrayAvailable()
{
    xcb_connection_t* const connection = x11Connection();
    return connection != nullptr && x11ManagerOf(connection, traySelection) != XCB_WINDOW_NONE;
}

std::optional<QColor> x11TrayForeground()
{
    xcb_connection_t* const connection = x11Connection();
    const xcb_window_t tray =
        connection != nullptr ? x11ManagerOf(connection, traySelection) : xcb_window_t(XCB_WINDOW_NONE);
    if (tray == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    const auto cookie =
        xcb_get_property(connection, false, tray, x11ExistingAtom(connection, "_NET_SYSTEM_TRAY_COLORS"),
                         XCB_ATOM_CARDINAL, 0, Foreground().size());
    const auto property = xcbPointer(xcb_get_property_reply(connection, cookie, nullptr));
    Foreground channels{};
    if (!property || property->format != 32 || xcb_get_property_value_length(property.get()) < int(sizeof channels)) {
        return std::nullopt;
    }
    std::memcpy(channels.data(), xcb_get_property_value(property.get()), sizeof channels);
    return QColor::fromRgba64(quint16(channels[0]), quint16(channels[1]), quint16(channels[2]));
}

} // namespace lapsa
