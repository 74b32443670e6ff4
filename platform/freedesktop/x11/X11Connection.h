// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "XcbPointer.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QList>

#include <xcb/xcb.h>

#include <cstdint>
#include <deque>
#include <functional>

namespace lapsa {

using X11Event = XcbPointer<xcb_generic_event_t>;

/// A connection to the X server beside the toolkit's, with nothing that waits longer than it may. When the connection
/// breaks, all answers are empty.
class X11Connection final
{
public:
    /// To the display that the environment names.
    X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;
    ~X11Connection();

    [[nodiscard]] bool usable() const;

    [[nodiscard]] xcb_connection_t* get() const { return m_connection; }

    [[nodiscard]] xcb_window_t root() const { return m_root; }

    /// What can be waited on, from outside, for events to come.
    [[nodiscard]] int fileDescriptor() const;

    /// Zero when the server does not answer in time.
    [[nodiscard]] xcb_atom_t atom(const QByteArray& name, const QDeadlineTimer& deadline);
    /// The names of several atoms, in their order; empty for what is not an atom.
    [[nodiscard]] QList<QByteArray> atomNames(const QList<xcb_atom_t>& atoms, const QDeadlineTimer& deadline);

    /// The value of a property of at most 4 kB; empty when there is none.
    [[nodiscard]] QByteArray text(xcb_window_t window, xcb_atom_t property, const QDeadlineTimer& deadline);
    [[nodiscard]] QList<std::uint32_t> numbers(xcb_window_t window, xcb_atom_t property,
                                               const QDeadlineTimer& deadline);

    /// The reply to a request; null after an error, and when it does not come in time.
    template <typename Reply, typename Cookie>
    [[nodiscard]] XcbPointer<Reply> reply(const Cookie& cookie, const QDeadlineTimer& deadline) const
    {
        return XcbPointer<Reply>(static_cast<Reply*>(waitForReply(cookie.sequence, deadline)));
    }

    /// The next event; null when none comes in time.
    [[nodiscard]] X11Event nextEvent(const QDeadlineTimer& deadline);
    /// The next event of a kind; others are kept for later.
    [[nodiscard]] X11Event nextEvent(const std::function<bool(const xcb_generic_event_t&)>& wanted,
                                     const QDeadlineTimer& deadline);

    /// Drops what was kept of a kind.
    void forgetEvents(const std::function<bool(const xcb_generic_event_t&)>& unwanted);

    /// Whether two resources were made by the same client.
    [[nodiscard]] bool sameClient(std::uint32_t one, std::uint32_t other) const;

private:
    [[nodiscard]] void* waitForReply(unsigned int sequence, const QDeadlineTimer& deadline) const;
    /// Until something can be read; false at the deadline and when the connection is broken.
    [[nodiscard]] bool waitForInput(const QDeadlineTimer& deadline) const;
    [[nodiscard]] X11Event readEvent(const QDeadlineTimer& deadline) const;

    xcb_connection_t* m_connection = nullptr;
    xcb_window_t m_root = XCB_WINDOW_NONE;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    std::deque<X11Event> m_kept;
};

/// The kind of an event, whether a client sent it or the server made it.
[[nodiscard]] std::uint8_t kindOf(const xcb_generic_event_t& event);

} // namespace lapsa
