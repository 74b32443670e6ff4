// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11InputMonitor.h"

#include "X11Screen.h"
#include "XcbPointer.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <cstdint>

namespace lapsa {

namespace {

/// Since this version, raw events are reported despite a grab (X Input Extension 2, "Raw events").
constexpr std::uint16_t majorVersion = 2;
constexpr std::uint16_t minorVersion = 1;

constexpr std::uint32_t keyEvents = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS;
constexpr std::uint32_t buttonEvents =
    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;

/// The wire format: the mask follows its header.
struct RawEventMask
{
    xcb_input_event_mask_t head;
    std::uint32_t mask;
};

} // namespace

void X11InputMonitor::Disconnect::operator()(xcb_connection_t* connection) const
{
    xcb_disconnect(connection);
}

X11InputMonitor::X11InputMonitor(Kind kind)
{
    if (x11Connection() == nullptr) {
        return;
    }
    // A separate connection: selecting events on the toolkit's would replace the toolkit's selection.
    m_connection.reset(xcb_connect(nullptr, nullptr));
    if (!select(kind)) {
        m_connection.reset();
        return;
    }
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11InputMonitor::readEvents);
}

X11InputMonitor::~X11InputMonitor() = default;

bool X11InputMonitor::select(Kind kind)
{
    xcb_connection_t* const connection = m_connection.get();
    if (xcb_connection_has_error(connection) != 0) {
        return false;
    }
    const xcb_query_extension_reply_t* const extension = xcb_get_extension_data(connection, &xcb_input_id);
    if (extension == nullptr || extension->present == 0) {
        return false;
    }
    m_extension = extension->major_opcode;
    const auto version = xcbPointer(xcb_input_xi_query_version_reply(
        connection, xcb_input_xi_query_version(connection, majorVersion, minorVersion), nullptr));
    if (!version || version->major_version < majorVersion || version->minor_version < minorVersion) {
        return false;
    }
    const RawEventMask mask{.head = {.deviceid = XCB_INPUT_DEVICE_ALL_MASTER, .mask_len = 1},
                            .mask = kind == Kind::Buttons ? buttonEvents : keyEvents};
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_input_xi_select_events(connection, root, 1, &mask.head);
    return xcb_flush(connection) > 0;
}

void X11InputMonitor::readEvents()
{
    while (const auto event = xcbPointer(xcb_poll_for_event(m_connection.get()))) {
        if ((event->response_type & 0x7F) != XCB_GE_GENERIC) {
            continue;
        }
        // All raw events start with the same fields.
        const auto* const raw = reinterpret_cast<const xcb_input_raw_button_press_event_t*>(event.get()); // NOLINT
        if (raw->extension != m_extension) {
            continue;
        }
        if (raw->event_type == XCB_INPUT_RAW_BUTTON_RELEASE) {
            emit released(raw->detail);
        } else if (raw->event_type == XCB_INPUT_RAW_BUTTON_PRESS || raw->event_type == XCB_INPUT_RAW_KEY_PRESS) {
            emit pressed(raw->detail);
        }
    }
    if (xcb_connection_has_error(m_connection.get()) != 0) {
        m_notifier->setEnabled(false); // the X server is gone
    }
}

} // namespace lapsa
