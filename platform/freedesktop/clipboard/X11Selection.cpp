// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11Selection.h"

#include "X11Connection.h"

#include <cstdint>
#include <cstring>

namespace lapsa {

namespace {

/// In units of four bytes: one megabyte at a time, so that the deadline is checked in between.
constexpr std::uint32_t pieceLength = 256 * 1024;
constexpr qsizetype targetsLimit = 4096;

} // namespace

X11Selection::X11Selection(X11Connection& connection, const QDeadlineTimer& deadline)
    : m_connection(connection)
    , m_window(xcb_generate_id(connection.get()))
    , m_clipboard(connection.atom("CLIPBOARD", deadline))
    , m_property(connection.atom("SELECTION_ANSWER", deadline))
    , m_targets(connection.atom("TARGETS", deadline))
    , m_pieces(connection.atom("INCR", deadline))
{
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, m_window, connection.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

X11Selection::~X11Selection()
{
    xcb_destroy_window(m_connection.get(), m_window);
    xcb_flush(m_connection.get());
}

xcb_window_t X11Selection::owner(const QDeadlineTimer& deadline)
{
    const auto answer = m_connection.reply<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(m_connection.get(), m_clipboard), deadline);
    return answer ? answer->owner : xcb_window_t{XCB_WINDOW_NONE};
}

void X11Selection::clear()
{
    xcb_set_selection_owner(m_connection.get(), XCB_WINDOW_NONE, m_clipboard, XCB_CURRENT_TIME);
    xcb_flush(m_connection.get());
}

QList<xcb_atom_t> X11Selection::targets(const QDeadlineTimer& deadline)
{
    const SelectionAnswer answer = read(m_targets, deadline, targetsLimit);
    // Some owners return plain text for everything, and some give the target as the type.
    const bool atoms = answer.type == XCB_ATOM_ATOM || answer.type == m_targets;
    if (answer.outcome != SelectionAnswer::Outcome::Answered || answer.format != 32 || !atoms) {
        return {};
    }
    QList<xcb_atom_t> found(answer.bytes.size() / qsizetype(sizeof(xcb_atom_t)));
    std::memcpy(found.data(), answer.bytes.constData(), static_cast<std::size_t>(found.size()) * sizeof(xcb_atom_t));
    return found;
}

SelectionAnswer X11Selection::read(xcb_atom_t target, const QDeadlineTimer& deadline, qsizetype limit)
{
    SelectionAnswer answer = readWhole(target, deadline, limit);
    using enum SelectionAnswer::Outcome;
    m_unfinished = answer.outcome == NoAnswer || answer.outcome == TooLarge;
    return answer;
}

void X11Selection::takeRest()
{
    while (m_connection.nextEvent(QDeadlineTimer(0))) {
    }
    // The owner sends the next piece once this one is deleted, even if it was read only in part.
    xcb_delete_property(m_connection.get(), m_window, m_property);
    xcb_flush(m_connection.get());
}

SelectionAnswer X11Selection::readWhole(xcb_atom_t target, const QDeadlineTimer& deadline, qsizetype limit)
{
    xcb_delete_property(m_connection.get(), m_window, m_property);
    xcb_convert_selection(m_connection.get(), m_window, m_clipboard, target, m_property, XCB_CURRENT_TIME);
    const X11Event event = m_connection.nextEvent(
        [this, target](const xcb_generic_event_t& candidate) {
            const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(candidate);
            return kindOf(candidate) == XCB_SELECTION_NOTIFY && answer.requestor == m_window && answer.target == target;
        },
        deadline);
    if (!event) {
        return {};
    }
    if (reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property == XCB_ATOM_NONE) {
        return {.outcome = SelectionAnswer::Outcome::Refused, .bytes = {}};
    }
    // The property change that came with this answer would look like the first piece.
    m_connection.forgetEvents([this](const xcb_generic_event_t& candidate) {
        return kindOf(candidate) == XCB_PROPERTY_NOTIFY &&
               reinterpret_cast<const xcb_property_notify_event_t&>(candidate).window == m_window;
    });
    SelectionAnswer answer = takeProperty(deadline, limit);
    return answer.type == m_pieces && answer.outcome == SelectionAnswer::Outcome::Answered ? takePieces(deadline, limit)
                                                                                           : answer;
}

SelectionAnswer X11Selection::takeProperty(const QDeadlineTimer& deadline, qsizetype limit)
{
    SelectionAnswer answer;
    std::uint32_t left = 0;
    do {
        const auto offset = static_cast<std::uint32_t>(answer.bytes.size() / 4);
        const auto piece = m_connection.reply<xcb_get_property_reply_t>(
            xcb_get_property(m_connection.get(), true, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, offset,
                             pieceLength),
            deadline);
        if (!piece || piece->format == 0) {
            return answer;
        }
        answer.type = piece->type;
        answer.format = piece->format;
        answer.bytes.append(static_cast<const char*>(xcb_get_property_value(piece.get())),
                            xcb_get_property_value_length(piece.get()));
        left = piece->bytes_after;
        if (answer.bytes.size() + qsizetype(left) > limit) {
            answer.outcome = SelectionAnswer::Outcome::TooLarge;
            return answer;
        }
    } while (left > 0);
    answer.outcome = SelectionAnswer::Outcome::Answered;
    return answer;
}

SelectionAnswer X11Selection::takePieces(const QDeadlineTimer& deadline, qsizetype limit)
{
    SelectionAnswer whole;
    const auto newPiece = [this](const xcb_generic_event_t& candidate) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(candidate);
        return kindOf(candidate) == XCB_PROPERTY_NOTIFY && change.window == m_window && change.atom == m_property &&
               change.state == XCB_PROPERTY_NEW_VALUE;
    };
    while (m_connection.nextEvent(newPiece, deadline)) {
        const SelectionAnswer piece = takeProperty(deadline, limit - whole.bytes.size());
        if (piece.outcome != SelectionAnswer::Outcome::Answered) {
            return piece;
        }
        whole.type = piece.type;
        whole.format = piece.format;
        if (piece.bytes.isEmpty()) {
            whole.outcome = SelectionAnswer::Outcome::Answered;
            return whole;
        }
        whole.bytes.append(piece.bytes);
    }
    return whole;
}

} // namespace lapsa
