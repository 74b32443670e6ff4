// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDeadlineTimer>

#include <xcb/xcb.h>

#include <cstdint>

namespace lapsa {

class X11Connection;

/// Watches whether a file manager that was asked to copy takes the clipboard or has nothing to copy.
///
/// Two pings show that there is nothing to copy (_NET_WM_PING of the Extended Window Manager Hints): a program that has
/// answered both has also read the key events sent before them.
class CopyWatch final
{
public:
    /// From now on, every change of the clipboard's owner counts, except those by the client with the resource `ours`.
    /// The connection must outlive this object.
    CopyWatch(X11Connection& connection, xcb_window_t fileManager, std::uint32_t ours, const QDeadlineTimer& deadline);

    /// The file manager has been asked.
    void asked(const QDeadlineTimer& deadline);

    /// The file manager has reported that it is done.
    void done() { m_settled = true; }

    void handle(const xcb_generic_event_t& event);

    /// Whether the file manager took the clipboard.
    [[nodiscard]] bool copied() const { return m_copied; }

    /// Whether another program has taken the clipboard since.
    [[nodiscard]] bool takenByAnother() const { return m_takenByAnother; }

    /// Whether the file manager has handled the request: a copy is unlikely to follow.
    [[nodiscard]] bool settled() const { return m_settled; }

    /// Whether settled() can become true: after done(), or if the program answers pings.
    [[nodiscard]] bool canSettle() const { return m_pings > 0 || m_settled; }

private:
    void noteOwner(xcb_window_t owner);
    void ping();
    [[nodiscard]] bool isAnswer(const xcb_generic_event_t& event) const;

    X11Connection& m_connection;
    xcb_window_t m_fileManager;
    std::uint32_t m_ours;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_protocols;
    xcb_atom_t m_ping;
    std::uint8_t m_ownerChanged = 0;
    std::uint32_t m_pings = 0;
    bool m_copied = false;
    bool m_takenByAnother = false;
    bool m_settled = false;
};

} // namespace lapsa
