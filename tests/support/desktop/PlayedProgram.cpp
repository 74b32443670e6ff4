// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedProgram.h"

#include <QList>

#include <poll.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace lapsa::test {

namespace {

struct Free
{
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename T>
using Pointer = std::unique_ptr<T, Free>;

constexpr int pollTime = 5;
constexpr xcb_keycode_t keyC = 54; // of the layout that a server without a screen comes up with

void setNumbers(xcb_connection_t* connection, xcb_window_t window, const QByteArray& property, xcb_atom_t type,
                const QList<std::uint32_t>& values)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, PlayedProgram::atom(connection, property), type, 32,
                        std::uint32_t(values.size()), values.constData());
}

xcb_window_t rootOf(xcb_connection_t* connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

} // namespace

PlayedProgram::PlayedProgram(Part part)
    : m_part(std::move(part))
    , m_connection(xcb_connect(nullptr, nullptr))
    , m_root(rootOf(m_connection))
    , m_window(xcb_generate_id(m_connection))
{
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, m_root, 10, 10, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    const QByteArray name = QByteArray("window") + '\0' + m_part.windowClass + '\0';
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        std::uint32_t(name.size()), name.constData());
    if (m_part.answersPings) {
        setNumbers(m_connection, m_window, "WM_PROTOCOLS", XCB_ATOM_ATOM, {atom(m_connection, "_NET_WM_PING")});
    }
    if (m_part.processId != 0) {
        setNumbers(m_connection, m_window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {m_part.processId});
    }
    if (m_part.taskbar) {
        setNumbers(m_connection, m_window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                   {atom(m_connection, "_NET_WM_WINDOW_TYPE_DOCK")});
    }
    xcb_map_window(m_connection, m_window);
    roundTrip();
    m_thread = std::thread([this] { run(); });
}

PlayedProgram::~PlayedProgram()
{
    m_ending = true;
    m_thread.join();
    xcb_disconnect(m_connection);
}

void PlayedProgram::activate()
{
    sayActive();
    focus();
}

void PlayedProgram::sayActive()
{
    setNumbers(m_connection, m_root, "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {m_window});
    roundTrip();
}

void PlayedProgram::focus()
{
    xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_NONE, m_window, XCB_CURRENT_TIME);
    roundTrip();
}

void PlayedProgram::copy()
{
    xcb_set_selection_owner(m_connection, m_window, atom(m_connection, "CLIPBOARD"), XCB_CURRENT_TIME);
    roundTrip();
}

bool PlayedProgram::ownsClipboard()
{
    const Pointer<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, atom(m_connection, "CLIPBOARD")), nullptr));
    return owner && owner->owner == m_window;
}

QList<PlayedProgram::Key> PlayedProgram::keys()
{
    const std::lock_guard lock(m_mutex);
    return m_keys;
}

xcb_atom_t PlayedProgram::atom(xcb_connection_t* connection, const QByteArray& name)
{
    const Pointer<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, std::uint16_t(name.size()), name.constData()), nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

void PlayedProgram::run()
{
    while (!m_ending) {
        pollfd input{.fd = xcb_get_file_descriptor(m_connection), .events = POLLIN, .revents = 0};
        ::poll(&input, 1, pollTime);
        while (!m_hanging && !m_ending) {
            const Pointer<xcb_generic_event_t> event(xcb_poll_for_event(m_connection));
            if (!event) {
                break;
            }
            handle(*event);
        }
    }
}

void PlayedProgram::handle(const xcb_generic_event_t& event)
{
    switch (event.response_type & 0x7f) {
    case XCB_KEY_PRESS:
        pressed(reinterpret_cast<const xcb_key_press_event_t&>(event));
        break;
    case XCB_SELECTION_REQUEST:
        answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
        break;
    case XCB_CLIENT_MESSAGE:
        pong(reinterpret_cast<const xcb_client_message_event_t&>(event));
        break;
    default:
        break;
    }
}

void PlayedProgram::pressed(const xcb_key_press_event_t& event)
{
    if (m_part.looksFirst && event.detail == keyC) {
        lookAtClipboard();
    }
    if (event.detail == keyC && event.state == XCB_MOD_MASK_CONTROL && !m_part.forms.isEmpty()) {
        xcb_set_selection_owner(m_connection, m_window, atom(m_connection, "CLIPBOARD"), event.time);
        xcb_flush(m_connection);
    }
    const std::lock_guard lock(m_mutex);
    m_keys.push_back({event.detail, event.state});
}

void PlayedProgram::lookAtClipboard()
{
    xcb_convert_selection(m_connection, m_window, atom(m_connection, "CLIPBOARD"), atom(m_connection, "TARGETS"),
                          atom(m_connection, "LOOK"), XCB_CURRENT_TIME);
    xcb_flush(m_connection);
    while (!m_ending) {
        const Pointer<xcb_generic_event_t> event(xcb_poll_for_event(m_connection));
        if (event && (event->response_type & 0x7f) == XCB_SELECTION_NOTIFY) {
            return;
        }
        pollfd input{.fd = xcb_get_file_descriptor(m_connection), .events = POLLIN, .revents = 0};
        ::poll(&input, 1, pollTime);
    }
}

void PlayedProgram::answer(const xcb_selection_request_event_t& request)
{
    if (!m_part.handsOut) {
        return;
    }
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = handOut(request) ? request.property : xcb_atom_t(XCB_ATOM_NONE);
    xcb_send_event(m_connection, false, request.requestor, 0, reinterpret_cast<const char*>(&notify));
    xcb_flush(m_connection);
}

bool PlayedProgram::handOut(const xcb_selection_request_event_t& request)
{
    QList<std::uint32_t> targets{atom(m_connection, "TARGETS"), atom(m_connection, "TIMESTAMP")};
    if (request.target == targets.first()) {
        for (const auto& [name, bytes] : m_part.forms) {
            targets.push_back(atom(m_connection, name));
        }
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, XCB_ATOM_ATOM, 32,
                            std::uint32_t(targets.size()), targets.constData());
        return true;
    }
    const auto form = std::ranges::find_if(
        m_part.forms, [&](const auto& candidate) { return atom(m_connection, candidate.first) == request.target; });
    if (form == m_part.forms.end()) {
        return false;
    }
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property, request.target, 8,
                        std::uint32_t(form->second.size()), form->second.constData());
    return true;
}

void PlayedProgram::pong(const xcb_client_message_event_t& message)
{
    if (!m_part.answersPings || message.data.data32[0] != atom(m_connection, "_NET_WM_PING")) {
        return;
    }
    xcb_client_message_event_t reply = message;
    reply.response_type = XCB_CLIENT_MESSAGE;
    reply.window = m_root;
    xcb_send_event(m_connection, false, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&reply));
    xcb_flush(m_connection);
}

void PlayedProgram::roundTrip()
{
    const Pointer<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

void noActiveWindow()
{
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    setNumbers(connection, rootOf(connection), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW, {XCB_WINDOW_NONE});
    xcb_set_input_focus(connection, XCB_INPUT_FOCUS_NONE, XCB_WINDOW_NONE, XCB_CURRENT_TIME);
    const Pointer<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

} // namespace lapsa::test
