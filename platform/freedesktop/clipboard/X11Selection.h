// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>

#include <xcb/xcb.h>

namespace lapsa {

class X11Connection;

/// What the owner of a selection answered to the question for one target.
struct SelectionAnswer
{
    enum class Outcome
    {
        Answered,
        /// The owner does not have it.
        Refused,
        /// Not in time, or not the way that owners have to answer.
        NoAnswer,
        TooLarge,
    };

    Outcome outcome = Outcome::NoAnswer;
    xcb_atom_t type = XCB_ATOM_NONE;
    /// Bits of one element: 8, 16 or 32.
    int format = 0;
    QByteArray bytes;
};

/// Reads the clipboard as another program would. Asking for what one's own program owns would wait for itself.
class X11Selection final
{
public:
    /// The connection outlives this object.
    X11Selection(X11Connection& connection, const QDeadlineTimer& deadline);
    X11Selection(const X11Selection&) = delete;
    X11Selection& operator=(const X11Selection&) = delete;
    ~X11Selection();

    /// The window that owns it; none when nobody does.
    [[nodiscard]] xcb_window_t owner(const QDeadlineTimer& deadline);

    /// From now on nobody owns it.
    void clear();

    /// What the owner says it can give; empty when it does not say.
    [[nodiscard]] QList<xcb_atom_t> targets(const QDeadlineTimer& deadline);

    [[nodiscard]] SelectionAnswer read(xcb_atom_t target, const QDeadlineTimer& deadline, qsizetype limit);

    /// Whether an answer has not come whole. Some owners end when the one who asked has gone meanwhile, and the content
    /// with them: then stay, and take the rest.
    [[nodiscard]] bool unfinished() const { return m_unfinished; }

    /// Takes what has come of the rest, and drops it.
    void takeRest();

private:
    [[nodiscard]] SelectionAnswer readWhole(xcb_atom_t target, const QDeadlineTimer& deadline, qsizetype limit);
    /// Takes what stands in our property, all of it.
    [[nodiscard]] SelectionAnswer takeProperty(const QDeadlineTimer& deadline, qsizetype limit);
    /// The rest of an answer that comes in pieces.
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
