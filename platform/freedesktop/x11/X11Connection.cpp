// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11Connection.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace lapsa {

namespace {

constexpr std::uint32_t propertyLimit = 1024; // in units of four bytes
constexpr std::uint8_t sentByAClient = 0x80;

xcb_window_t rootOfScreen(xcb_connection_t* connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    while (number > 0 && screens.rem > 1) {
        xcb_screen_next(&screens);
        --number;
    }
    return screens.rem > 0 ? screens.data->root : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace

X11Connection::X11Connection()
{
    int screen = 0;
    m_connection = xcb_connect(nullptr, &screen);
    if (usable()) {
        m_root = rootOfScreen(m_connection, screen);
    }
}

X11Connection::~X11Connection()
{
    xcb_disconnect(m_connection);
}

bool X11Connection::usable() const
{
    return xcb_connection_has_error(m_connection) == 0;
}

int X11Connection::fileDescriptor() const
{
    return xcb_get_file_descriptor(m_connection);
}

xcb_atom_t X11Connection::atom(const QByteArray& name, const QDeadlineTimer& deadline)
{
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend()) {
        return *known;
    }
    const auto answer = reply<xcb_intern_atom_reply_t>(
        xcb_intern_atom(m_connection, false, static_cast<std::uint16_t>(name.size()), name.constData()), deadline);
    if (!answer) {
        return XCB_ATOM_NONE;
    }
    m_atoms.insert(name, answer->atom);
    return answer->atom;
}

QList<QByteArray> X11Connection::atomNames(const QList<xcb_atom_t>& atoms, const QDeadlineTimer& deadline)
{
    // Send all requests first, so that they take one round trip to the server.
    QList<xcb_get_atom_name_cookie_t> cookies;
    for (const xcb_atom_t one : atoms) {
        cookies.push_back(xcb_get_atom_name(m_connection, one));
    }
    QList<QByteArray> names;
    for (const xcb_get_atom_name_cookie_t cookie : cookies) {
        const auto answer = reply<xcb_get_atom_name_reply_t>(cookie, deadline);
        names.push_back(
            answer ? QByteArray(xcb_get_atom_name_name(answer.get()), xcb_get_atom_name_name_length(answer.get()))
                   : QByteArray());
    }
    return names;
}

QByteArray X11Connection::text(xcb_window_t window, xcb_atom_t property, const QDeadlineTimer& deadline)
{
    const auto answer = reply<xcb_get_property_reply_t>(
        xcb_get_property(m_connection, false, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, propertyLimit), deadline);
    if (!answer || answer->format != 8) {
        return {};
    }
    return QByteArray(static_cast<const char*>(xcb_get_property_value(answer.get())),
                      xcb_get_property_value_length(answer.get()));
}

QList<std::uint32_t> X11Connection::numbers(xcb_window_t window, xcb_atom_t property, const QDeadlineTimer& deadline)
{
    const auto answer = reply<xcb_get_property_reply_t>(
        xcb_get_property(m_connection, false, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, propertyLimit), deadline);
    if (!answer || answer->format != 32) {
        return {};
    }
    QList<std::uint32_t> values(xcb_get_property_value_length(answer.get()) / int(sizeof(std::uint32_t)));
    std::memcpy(values.data(), xcb_get_property_value(answer.get()),
                static_cast<std::size_t>(values.size()) * sizeof(std::uint32_t));
    return values;
}

X11Event X11Connection::nextEvent(const QDeadlineTimer& deadline)
{
    return nextEvent([](const xcb_generic_event_t&) { return true; }, deadline);
}

X11Event X11Connection::nextEvent(const std::function<bool(const xcb_generic_event_t&)>& wanted,
                                  const QDeadlineTimer& deadline)
{
    const auto kept =
        std::find_if(m_kept.begin(), m_kept.end(), [&wanted](const X11Event& event) { return wanted(*event); });
    if (kept != m_kept.end()) {
        X11Event event = std::move(*kept);
        m_kept.erase(kept);
        return event;
    }
    while (X11Event event = readEvent(deadline)) {
        if (wanted(*event)) {
            return event;
        }
        m_kept.push_back(std::move(event));
        // The deadline applies even while events keep arriving.
        if (deadline.hasExpired()) {
            break;
        }
    }
    return nullptr;
}

void X11Connection::forgetEvents(const std::function<bool(const xcb_generic_event_t&)>& unwanted)
{
    std::erase_if(m_kept, [&unwanted](const X11Event& event) { return unwanted(*event); });
}

bool X11Connection::sameClient(std::uint32_t one, std::uint32_t other) const
{
    return ((one ^ other) & ~xcb_get_setup(m_connection)->resource_id_mask) == 0;
}

void* X11Connection::waitForReply(unsigned int sequence, const QDeadlineTimer& deadline) const
{
    xcb_flush(m_connection);
    void* answer = nullptr;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(m_connection, sequence, &answer, &error) == 0) {
        if (!waitForInput(deadline)) {
            xcb_discard_reply(m_connection, sequence);
            return nullptr;
        }
    }
    const XcbPointer<xcb_generic_error_t> done(error);
    return answer;
}

bool X11Connection::waitForInput(const QDeadlineTimer& deadline) const
{
    if (deadline.hasExpired() || !usable()) {
        return false;
    }
    pollfd input{.fd = fileDescriptor(), .events = POLLIN, .revents = 0};
    const int found = ::poll(&input, 1, static_cast<int>(deadline.remainingTime()));
    return found > 0 || (found < 0 && errno == EINTR);
}

X11Event X11Connection::readEvent(const QDeadlineTimer& deadline) const
{
    xcb_flush(m_connection);
    X11Event event(xcb_poll_for_event(m_connection));
    while (!event && waitForInput(deadline)) {
        event.reset(xcb_poll_for_event(m_connection));
    }
    return event;
}

std::uint8_t kindOf(const xcb_generic_event_t& event)
{
    return event.response_type & static_cast<std::uint8_t>(~sentByAClient);
}

} // namespace lapsa
