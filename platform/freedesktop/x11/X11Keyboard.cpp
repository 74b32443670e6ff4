// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11Keyboard.h"

#include "XcbPointer.h"

#include <algorithm>
#include <cstdarg>
#include <span>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace lapsa {

namespace {

/// The shift level of a key without Shift.
constexpr xkb_level_index_t unshifted = 0;
constexpr int modifierCount = 8;

bool carries(xkb_keymap* keymap, xkb_keycode_t key, xkb_layout_index_t group, xcb_keysym_t symbol)
{
    const xkb_keysym_t* symbols = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(keymap, key, group, unshifted, &symbols);
    const std::span<const xkb_keysym_t> all(symbols, static_cast<std::size_t>(std::max(count, 0)));
    return std::ranges::find(all, symbol) != all.end();
}

/// The keys of the map for which `wanted` is true.
template <typename Wanted>
QList<xcb_keycode_t> keysOf(xkb_keymap* keymap, Wanted wanted)
{
    QList<xcb_keycode_t> keys;
    for (xkb_keycode_t key = xkb_keymap_min_keycode(keymap); key <= xkb_keymap_max_keycode(keymap); ++key) {
        if (wanted(key)) {
            keys.push_back(static_cast<xcb_keycode_t>(key));
        }
    }
    return keys;
}

bool carriesInAnyGroup(xkb_keymap* keymap, xkb_keycode_t key, xcb_keysym_t symbol)
{
    const xkb_layout_index_t groups = xkb_keymap_num_layouts_for_key(keymap, key);
    for (xkb_layout_index_t group = 0; group < groups; ++group) {
        if (carries(keymap, key, group, symbol)) {
            return true;
        }
    }
    return false;
}

void keepSilent(xkb_context*, xkb_log_level, const char*, va_list) {}

} // namespace

X11Keyboard::X11Keyboard(xcb_connection_t* connection)
    : m_connection(connection)
    , m_context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES), xkb_context_unref)
    , m_keymap(nullptr, xkb_keymap_unref)
    , m_state(nullptr, xkb_state_unref)
{
    if (!m_context) {
        return;
    }
    xkb_context_set_log_fn(m_context.get(), keepSilent);
    const std::int32_t device = xkb_x11_get_core_keyboard_device_id(connection);
    if (device < 0) {
        return;
    }
    m_keymap.reset(xkb_x11_keymap_new_from_device(m_context.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (m_keymap) {
        m_state.reset(xkb_x11_state_new_from_device(m_keymap.get(), connection, device));
    }
}

std::optional<std::uint8_t> X11Keyboard::setUp(xcb_connection_t* connection)
{
    std::uint8_t firstEvent = 0;
    const int known =
        xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                    XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr);
    return known == 1 ? std::optional(firstEvent) : std::nullopt;
}

QList<xcb_keycode_t> X11Keyboard::keysTyping(char letter) const
{
    if (!m_state) {
        return {};
    }
    // The key symbols of Latin letters equal their Latin-1 codes.
    const auto symbol = static_cast<xcb_keysym_t>(static_cast<unsigned char>(letter));
    QList<xcb_keycode_t> keys = keysTypingInUse(symbol);
    if (keys.isEmpty()) {
        keys = keysTypingInAnyGroup(symbol);
    }
    if (keys.isEmpty()) {
        keys = keysOnUsKeyboard(symbol);
    }
    return keys;
}

QList<xcb_keycode_t> X11Keyboard::keysTypingInUse(xcb_keysym_t symbol) const
{
    return keysOf(m_keymap.get(), [this, symbol](xkb_keycode_t key) {
        return carries(m_keymap.get(), key, xkb_state_key_get_layout(m_state.get(), key), symbol);
    });
}

QList<xcb_keycode_t> X11Keyboard::keysTypingInAnyGroup(xcb_keysym_t symbol) const
{
    return keysOf(m_keymap.get(),
                  [this, symbol](xkb_keycode_t key) { return carriesInAnyGroup(m_keymap.get(), key, symbol); });
}

QList<xcb_keycode_t> X11Keyboard::keysOnUsKeyboard(xcb_keysym_t symbol) const
{
    constexpr xkb_rule_names us{
        .rules = "evdev", .model = "pc105", .layout = "us", .variant = nullptr, .options = nullptr};
    const Handle<xkb_keymap> keymap(xkb_keymap_new_from_names(m_context.get(), &us, XKB_KEYMAP_COMPILE_NO_FLAGS),
                                    xkb_keymap_unref);
    if (!keymap) {
        return {};
    }
    return keysOf(keymap.get(),
                  [&keymap, symbol](xkb_keycode_t key) { return carriesInAnyGroup(keymap.get(), key, symbol); });
}

std::uint16_t X11Keyboard::modifiersOf(std::initializer_list<xcb_keysym_t> symbols) const
{
    const auto mapping =
        xcbPointer(xcb_get_modifier_mapping_reply(m_connection, xcb_get_modifier_mapping(m_connection), nullptr));
    if (!mapping || !m_keymap) {
        return 0;
    }
    // The same number of keys for each modifier; 0 means none.
    const std::span<const xcb_keycode_t> keys(
        xcb_get_modifier_mapping_keycodes(mapping.get()),
        static_cast<std::size_t>(xcb_get_modifier_mapping_keycodes_length(mapping.get())));
    std::uint16_t modifiers = 0;
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const bool found = keys[i] != 0 && std::ranges::any_of(symbols, [this, key = keys[i]](xcb_keysym_t symbol) {
                               return carriesInAnyGroup(m_keymap.get(), key, symbol);
                           });
        if (found) {
            modifiers |= static_cast<std::uint16_t>(1U << (i * modifierCount / keys.size()));
        }
    }
    return modifiers;
}

} // namespace lapsa
