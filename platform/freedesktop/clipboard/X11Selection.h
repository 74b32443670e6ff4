// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>

#include <xcb/xcb.h>

namespace lapsa {

class X11Connection;

/// The answer of a selection's owner to a request for one target.
struct SelectionAnswer
{
    enum class Outcome
    {
        Answered,
        /// The owner does not have it.
        Refused,
        /// Too late, or not in the way that the protocol requires.
        NoAnswer,
        TooLarge,
    };

    Outcome outcome = Outcome::NoAnswer;
    xcb_atom_t type = XCB_ATOM_NONE;
    /// Bits per element: 8, 16 or 32.
    int format = 0;
    QByteArray bytes;
};

/// Reads the clipboard as another program would. Do not use it for content that this program owns: it would wait for
/// itself.
class X11Selection final
{
public:
    /// The connection must outlive this object.
    X11Selection(X11Connection& connection, const QDeadlineTimer& deadline);
    X11Selection(const X11Selection&) = delete;
    X11Selection& operator=(const X11Selection&) = delete;
    ~X11Selection();

    /// The window that owns it; XCB_WINDOW_NONE without an owner.
    [[nodiscard]] xcb_window_t owner(const QDeadlineTimer& deadline);

    /// Leaves the clipboard without an owner.
    void clear();

    /// The targets that the owner offers; empty if it does not say.
    [[nodiscard]] QList<xcb_atom_t> targets(const QDeadlineTimer& deadline);

    [[nodiscard]] SelectionAnswer read(xcb_atom_t target, const QDeadlineTimer& deadline, qsizetype limit);

    /// Whether an answer is still incomplete. Some owners exit if the requestor disappears meanwhile, and the content
    /// is lost: keep this object and read the rest.
    [[nodiscard]] bool unfinished() const { return m_unfinished; }

    /// Reads and drops what has arrived of the rest.
    void takeRest();

private:
    [[nodiscard]] SelectionAnswer readWhole(xcb_atom_t target, const QDeadlineTimer& deadline, qsizetype limit);
    /// Reads the whole content of our property.
    [[nodiscard]] SelectionAnswer takeProperty(const QDeadlineTimer& deadline, qsizetype limit);
    /// Reads the rest of an answer that comes in pieces.
    [[nodiscard]] SelectionAnswer takePieces(const QDeadlineTimer& deadline, qsizetype limit);

    X11Connection& m_connection;
    xcb_window_t m_window;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_property;
    xcb_atom_t m_targets;
    xcb_atom_t m_pieces;
    bool m_unfinished = false;
};

} // namespace lapsa
