// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "KeyStrokes.h"

#include "X11Connection.h"
#include "X11Screen.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <optional>
#include <tuple>

namespace lapsa {

namespace {

constexpr xcb_keysym_t letterC = 0x63;
constexpr xcb_keysym_t letterY = 0x79; // of the shortcut that may have triggered this
constexpr xcb_keysym_t leftControl = 0xffe3;
constexpr int lockModifier = 1; // the second row of the modifier mapping
constexpr int modifierRows = 8;

/// Two columns of the core mapping form one layout group: without and with Shift.
constexpr int columnsOfAGroup = 2;
constexpr unsigned int groupShift = 13;
constexpr unsigned int groupMask = 3;

/// The keys of the keyboard, and which of them are down.
class Keyboard final
{
public:
    Keyboard(const X11Connection& connection, const QDeadlineTimer& deadline)
    {
        const xcb_setup_t* const setup = xcb_get_setup(connection.get());
        m_first = setup->min_keycode;
        m_count = setup->max_keycode - setup->min_keycode + 1;
        // Send all requests first, so that they take one round trip to the server.
        const auto mapping = xcb_get_keyboard_mapping(connection.get(), m_first, static_cast<std::uint8_t>(m_count));
        const auto modifiers = xcb_get_modifier_mapping(connection.get());
        const auto keymap = xcb_query_keymap(connection.get());
        const auto pointer = xcb_query_pointer(connection.get(), connection.root());
        m_mapping = connection.reply<xcb_get_keyboard_mapping_reply_t>(mapping, deadline);
        m_modifiers = connection.reply<xcb_get_modifier_mapping_reply_t>(modifiers, deadline);
        m_keymap = connection.reply<xcb_query_keymap_reply_t>(keymap, deadline);
        m_pointer = connection.reply<xcb_query_pointer_reply_t>(pointer, deadline);
    }

    [[nodiscard]] bool known() const { return m_mapping && m_modifiers && m_keymap && m_pointer; }

    /// The key for a letter in the current layout group, else in another one: with a layout without Latin letters,
    /// programs look for shortcuts there too.
    [[nodiscard]] std::optional<xcb_keycode_t> keyOf(xcb_keysym_t symbol) const
    {
        const int columns = m_mapping->keysyms_per_keycode;
        const int group = static_cast<int>((m_pointer->mask >> groupShift) & groupMask) * columnsOfAGroup;
        if (const auto key = keyInColumns(symbol, group, group + columnsOfAGroup)) {
            return key;
        }
        return keyInColumns(symbol, 0, columns);
    }

    /// The modifier keys that the user holds, and the letter's key if it is held.
    [[nodiscard]] QList<xcb_keycode_t> held(xcb_keysym_t letter) const
    {
        QList<xcb_keycode_t> keys;
        const xcb_keycode_t* const codes = xcb_get_modifier_mapping_keycodes(m_modifiers.get());
        const int perRow = m_modifiers->keycodes_per_modifier;
        for (int i = 0; i < modifierRows * perRow; ++i) {
            if (i / perRow != lockModifier && isDown(codes[i]) && !keys.contains(codes[i])) {
                keys.push_back(codes[i]);
            }
        }
        if (const auto key = keyOf(letter); key && isDown(*key)) {
            keys.push_back(*key);
        }
        return keys;
    }

private:
    [[nodiscard]] std::optional<xcb_keycode_t> keyInColumns(xcb_keysym_t symbol, int from, int to) const
    {
        const int columns = m_mapping->keysyms_per_keycode;
        const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(m_mapping.get());
        for (int key = 0; key < m_count; ++key) {
            for (int column = from; column < std::min(to, columns); ++column) {
                if (symbols[key * columns + column] == symbol) {
                    return static_cast<xcb_keycode_t>(m_first + key);
                }
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] bool isDown(xcb_keycode_t key) const
    {
        return key != 0 && (m_keymap->keys[key / 8] & (1U << (key % 8))) != 0;
    }

    xcb_keycode_t m_first = 0;
    int m_count = 0;
    XcbPointer<xcb_get_keyboard_mapping_reply_t> m_mapping;
    XcbPointer<xcb_get_modifier_mapping_reply_t> m_modifiers;
    XcbPointer<xcb_query_keymap_reply_t> m_keymap;
    XcbPointer<xcb_query_pointer_reply_t> m_pointer;
};

/// The server serves only this connection as long as this object exists.
class ServerGrab final
{
public:
    explicit ServerGrab(xcb_connection_t* connection)
        : m_connection(connection)
    {
        xcb_grab_server(m_connection);
    }

    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

    ~ServerGrab()
    {
        xcb_ungrab_server(m_connection);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
};

void play(xcb_connection_t* connection, std::uint8_t event, xcb_keycode_t key)
{
    xcb_test_fake_input(connection, event, key, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

/// While the keys of the global shortcut are down, the toolkit's connection has grabbed the keyboard.
void releaseKeyboardGrab()
{
    if (xcb_connection_t* const toolkit = x11Connection()) {
        const XcbPointer<xcb_generic_error_t> error(
            xcb_request_check(toolkit, xcb_ungrab_keyboard_checked(toolkit, XCB_CURRENT_TIME)));
    }
}

} // namespace

KeysOutcome pressCopy(X11Connection& connection, xcb_window_t window, const QDeadlineTimer& deadline)
{
    xcb_connection_t* const server = connection.get();
    const auto* const extension = xcb_get_extension_data(server, &xcb_test_id);
    if (extension == nullptr || extension->present == 0) {
        return KeysOutcome::Impossible;
    }
    releaseKeyboardGrab();

    const ServerGrab grab(server);
    const Keyboard keyboard(connection, deadline);
    const auto focus = connection.reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(server), deadline);
    if (!focus || !keyboard.known() || !connection.sameClient(focus->focus, window)) {
        return KeysOutcome::FocusElsewhere;
    }
    const auto control = keyboard.keyOf(leftControl);
    const auto letter = keyboard.keyOf(letterC);
    if (!control || !letter) {
        return KeysOutcome::Impossible;
    }
    for (const xcb_keycode_t key : keyboard.held(letterY)) {
        play(server, XCB_KEY_RELEASE, key);
    }
    play(server, XCB_KEY_PRESS, *control);
    play(server, XCB_KEY_PRESS, *letter);
    play(server, XCB_KEY_RELEASE, *letter);
    play(server, XCB_KEY_RELEASE, *control);
    return KeysOutcome::Sent;
}

} // namespace lapsa
