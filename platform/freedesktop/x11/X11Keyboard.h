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

/// The meaning of the keys of the X server's keyboard at construction time: in its layout and current group.
class X11Keyboard final
{
public:
    explicit X11Keyboard(xcb_connection_t* connection);

    /// The keys that type a lower-case Latin letter. If the current group has none: those of the other groups, and
    /// failing that, the key with this letter on a US keyboard. Empty only if the server does not report its keyboard.
    [[nodiscard]] QList<xcb_keycode_t> keysTyping(char letter) const;

    /// The modifiers set by keys with one of these symbols; 0 if there are none.
    [[nodiscard]] std::uint16_t modifiersOf(std::initializer_list<xcb_keysym_t> symbols) const;

    /// Prepares the connection for the functions above. Returns the number of the keyboard extension's first event;
    /// nothing if the server lacks the extension.
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
