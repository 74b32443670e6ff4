// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11ManagerWatch.h"

#include "X11Screen.h"
#include "XcbPointer.h"

#include <QCoreApplication>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

namespace lapsa {

namespace {

constexpr std::uint32_t everyChange = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;

} // namespace

X11ManagerWatch::X11ManagerWatch(const QByteArray& selection)
{
    xcb_connection_t* const connection = x11Connection();
    if (connection == nullptr) {
        return;
    }
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    // The manager may come later, so the atom need not exist yet.
    const QByteArray name = x11SelectionOfScreen(selection);
    const auto atom = xcbPointer(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, static_cast<std::uint16_t>(name.size()), name.constData()),
        nullptr));
    if (!atom) {
        return;
    }
    m_selection = atom->atom;
    m_event = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_xfixes_select_selection_input(connection, root, m_selection, everyChange);
    xcb_flush(connection);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11ManagerWatch::~X11ManagerWatch() = default;

bool X11ManagerWatch::nativeEventFilter(const QByteArray& type, void* message, qintptr* /*result*/)
{
    if (type == "xcb_generic_event_t") {
        const auto* const event = static_cast<const xcb_generic_event_t*>(message);
        if ((event->response_type & 0x7F) == m_event &&
            reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event)->selection == m_selection) { // NOLINT
            // The toolkit has not seen it yet.
            QMetaObject::invokeMethod(this, &X11ManagerWatch::ownerChanged, Qt::QueuedConnection);
        }
    }
    return false;
}

} // namespace lapsa
