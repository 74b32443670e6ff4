// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "CopyWatch.h"

#include "X11Connection.h"

#include <xcb/xfixes.h>

namespace lapsa {

namespace {

constexpr std::uint32_t pingsToSettle = 2;
/// Sent in place of a timestamp, so that a window manager does not mistake the answer for one to its own ping.
constexpr std::uint32_t pingMark = 0x4c617073;

} // namespace

CopyWatch::CopyWatch(X11Connection& connection, xcb_window_t fileManager, std::uint32_t ours,
                     const QDeadlineTimer& deadline)
    : m_connection(connection)
    , m_fileManager(fileManager)
    , m_ours(ours)
    , m_clipboard(connection.atom("CLIPBOARD", deadline))
    , m_protocols(connection.atom("WM_PROTOCOLS", deadline))
    , m_ping(connection.atom("_NET_WM_PING", deadline))
{
    xcb_connection_t* const server = connection.get();
    const auto* const extension = xcb_get_extension_data(server, &xcb_xfixes_id);
    if (extension == nullptr || extension->present == 0) {
        return;
    }
    m_ownerChanged = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    const auto version = connection.reply<xcb_xfixes_query_version_reply_t>(
        xcb_xfixes_query_version(server, XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION), deadline);
    xcb_xfixes_select_selection_input(server, connection.root(), m_clipboard,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
    // Answers to pings are sent to the root window.
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(server, connection.root(), XCB_CW_EVENT_MASK, &events);
    xcb_flush(server);
}

void CopyWatch::asked(const QDeadlineTimer& deadline)
{
    if (m_connection.numbers(m_fileManager, m_protocols, deadline).contains(m_ping)) {
        ping();
    }
}

void CopyWatch::handle(const xcb_generic_event_t& event)
{
    if (m_ownerChanged != 0 && kindOf(event) == m_ownerChanged) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (change.selection == m_clipboard) {
            noteOwner(change.owner);
        }
    } else if (isAnswer(event)) {
        if (m_pings < pingsToSettle) {
            ping();
        } else {
            m_settled = true;
        }
    }
}

void CopyWatch::noteOwner(xcb_window_t owner)
{
    if (m_connection.sameClient(owner, m_fileManager)) {
        m_copied = true;
        m_takenByAnother = false;
    } else if (owner != XCB_WINDOW_NONE && !m_connection.sameClient(owner, m_ours)) {
        m_takenByAnother = true;
    }
}

void CopyWatch::ping()
{
    ++m_pings;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_fileManager;
    message.type = m_protocols;
    message.data.data32[0] = m_ping;
    message.data.data32[1] = pingMark + m_pings;
    message.data.data32[2] = m_fileManager;
    xcb_send_event(m_connection.get(), false, m_fileManager, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_connection.get());
}

bool CopyWatch::isAnswer(const xcb_generic_event_t& event) const
{
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    return kindOf(event) == XCB_CLIENT_MESSAGE && message.type == m_protocols && message.format == 32 &&
           message.data.data32[0] == m_ping && message.data.data32[1] == pingMark + m_pings &&
           message.data.data32[2] == m_fileManager;
}

} // namespace lapsa
