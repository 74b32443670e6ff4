// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>

#include <xcb/xcb.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>

struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace lapsa {

/// What the keys of the X server's keyboard mean at the moment of construction: in its layout, and in the group that
/// is switched to.
class X11Keyboard final
{
public:
    explicit X11Keyboard(xcb_connection_t* connection);

    /// The keys that type a Latin small letter. Where the layout in use has none, the ones of its other groups, and
    /// without those the key that carries the letter on a US keyboard. Empty only when the server tells nothing.
    [[nodiscard]] QList<xcb_keycode_t> keysTyping(char letter) const;

    /// The modifiers that are set by keys with one of these symbols; 0 when there are none.
    [[nodiscard]] std::uint16_t modifiersOf(std::initializer_list<xcb_keysym_t> symbols) const;

    /// Prepares the connection for all of the above. Gives the number of the first event of the keyboard extension;
    /// nothing when the server has none.
    [[nodiscard]] static std::optional<std::uint8_t> setUp(xcb_connection_t* connection);

private:
    template <typename T>
    using Handle = std::unique_ptr<T, void (*)(T*)>;

    [[nodiscard]] QList<xcb_keycode_t> keysTypingInUse(xcb_keysym_t symbol) const;
    [[nodiscard]] QList<xcb_keycode_t> keysTypingInAnyGroup(xcb_keysym_t symbol) const;
    [[nodiscard]] QList<xcb_keycode_t> keysOnUsKeyboard(xcb_keysym_t symbol) const;

    xcb_connection_t* m_connection;
    Handle<xkb_context> m_context;
    Handle<xkb_keymap> m_keymap;
    Handle<xkb_state> m_state;
};

} // namespace lapsa
