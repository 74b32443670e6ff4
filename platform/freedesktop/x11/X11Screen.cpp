// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11Screen.h"

#include "XcbPointer.h"

#include <QGuiApplication>

#include <cstdint>
#include <cstring>

namespace lapsa {

namespace {

/// The screen number in DISPLAY, for servers with several screens.
int screenNumber()
{
    char* name = nullptr;
    int display = 0;
    int screen = 0;
    xcb_parse_display(nullptr, &name, &display, &screen);
    const auto host = xcbPointer(name);
    return screen;
}

/// At most a few words.
QByteArray valueOf(xcb_connection_t* connection, xcb_window_t window, const QByteArray& property)
{
    constexpr std::uint32_t longest = 64;
    const auto cookie =
        xcb_get_property(connection, false, window, x11ExistingAtom(connection, property), XCB_ATOM_ANY, 0, longest);
    const auto reply = xcbPointer(xcb_get_property_reply(connection, cookie, nullptr));
    return reply ? QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                              xcb_get_property_value_length(reply.get()))
                 : QByteArray();
}

} // namespace

xcb_connection_t* x11Connection()
{
    // Objects that outlive the application call this too.
    if (qGuiApp == nullptr) {
        return nullptr;
    }
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Without a screen, the toolkit may report X11 but have no connection.
    return x11 != nullptr ? x11->connection() : nullptr;
}

xcb_atom_t x11ExistingAtom(xcb_connection_t* connection, const QByteArray& name)
{
    const auto cookie = xcb_intern_atom(connection, true, static_cast<std::uint16_t>(name.size()), name.constData());
    const auto atom = xcbPointer(xcb_intern_atom_reply(connection, cookie, nullptr));
    return atom ? atom->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QByteArray x11SelectionOfScreen(const QByteArray& selection)
{
    return selection + QByteArray::number(screenNumber());
}

xcb_window_t x11ManagerOf(xcb_connection_t* connection, const QByteArray& selection)
{
    const xcb_atom_t atom = x11ExistingAtom(connection, x11SelectionOfScreen(selection));
    if (atom == XCB_ATOM_NONE) {
        return XCB_WINDOW_NONE;
    }
    const auto cookie = xcb_get_selection_owner(connection, atom);
    const auto owner = xcbPointer(xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return owner ? owner->owner : xcb_window_t(XCB_WINDOW_NONE);
}

QByteArray x11WindowManagerName(xcb_connection_t* connection)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const QByteArray check = valueOf(connection, root, "_NET_SUPPORTING_WM_CHECK");
    xcb_window_t manager = XCB_WINDOW_NONE;
    if (check.size() != sizeof manager) {
        return {};
    }
    std::memcpy(&manager, check.constData(), sizeof manager);
    return valueOf(connection, manager, "_NET_WM_NAME");
}

} // namespace lapsa
