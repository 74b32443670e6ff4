// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>

#include <xcb/xcb.h>

#include <cstdint>

namespace lapsa {

class X11Connection;

/// Follows what a file manager does after it was asked to copy: whether it takes the clipboard, or has nothing to copy.
///
/// That nothing is copied is known from two pings (_NET_WM_PING of the Extended Window Manager Hints): a program that
/// has answered both has read its events since, and the keys came before them.
class CopyWatch final
{
public:
    enum class State
    {
        Waiting,
        /// The file manager owns the clipboard.
        Copied,
        /// The file manager has done what it was asked for. What is not copied now will hardly come.
        Settled,
        /// Another program took the clipboard.
        TakenByAnother,
    };

    /// From now on every change of the clipboard's owner counts. The connection outlives this object.
    CopyWatch(X11Connection& connection, xcb_window_t fileManager, const QDeadlineTimer& deadline);

    /// The file manager has been asked.
    void asked(const QDeadlineTimer& deadline);
    /// It has told that it is done.
    void done();

    void handle(const xcb_generic_event_t& event);

    [[nodiscard]] State state() const { return m_state; }

    /// Whether it will be known that nothing is copied: after done(), and from a program that answers pings.
    [[nodiscard]] bool canSettle() const { return m_pings > 0 || m_state == State::Settled; }

private:
    void ping();
    [[nodiscard]] bool isAnswer(const xcb_generic_event_t& event) const;

    X11Connection& m_connection;
    xcb_window_t m_fileManager;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_protocols;
    xcb_atom_t m_ping;
    std::uint8_t m_ownerChanged = 0;
    std::uint32_t m_pings = 0;
    State m_state = State::Waiting;
};

} // namespace lapsa
