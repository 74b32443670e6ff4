// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "TaskbarMenuKeys.h"

#include "X11InputMonitor.h"
#include "X11Screen.h"
#include "XcbPointer.h"

#include <QKeySequence>

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>

namespace lapsa {

namespace {

// From keysymdef.h of the X protocol.
constexpr xcb_keysym_t escapeKey = 0xFF1B;
constexpr xcb_keysym_t leftControlKey = 0xFFE3;
constexpr xcb_keysym_t rightControlKey = 0xFFE4;
constexpr std::chrono::milliseconds openingPatience{2000};
constexpr std::uint16_t modifiersThatCount =
    XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4;

using KeySymbols = std::unique_ptr<xcb_key_symbols_t, decltype(&xcb_key_symbols_free)>;

xcb_window_t rootOf(xcb_connection_t* connection)
{
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// An open menu grabs the keyboard.
bool menuHasKeyboard(xcb_connection_t* connection)
{
    const auto cookie = xcb_grab_keyboard(connection, true, rootOf(connection), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                                          XCB_GRAB_MODE_ASYNC);
    const auto grab = xcbPointer(xcb_grab_keyboard_reply(connection, cookie, nullptr));
    if (grab && grab->status == XCB_GRAB_STATUS_SUCCESS) {
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        xcb_flush(connection);
    }
    return grab && grab->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool onlyControlIsHeld(xcb_connection_t* connection)
{
    const auto pointer =
        xcbPointer(xcb_query_pointer_reply(connection, xcb_query_pointer(connection, rootOf(connection)), nullptr));
    return pointer && (pointer->mask & modifiersThatCount) == XCB_MOD_MASK_CONTROL;
}

/// Simulates a key for whichever window has the keyboard.
void play(xcb_connection_t* connection, const KeySymbols& symbols, xcb_keysym_t key, std::uint8_t type)
{
    const auto codes = xcbPointer(xcb_key_symbols_get_keycode(symbols.get(), key));
    if (codes && *codes != XCB_NO_SYMBOL) {
        xcb_test_fake_input(connection, type, *codes, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
    }
}

/// Presses Escape, because the taskbar does not know that the entry was chosen.
void closeMenu(xcb_connection_t* connection, const KeySymbols& symbols)
{
    for (const xcb_keysym_t control : {leftControlKey, rightControlKey}) {
        play(connection, symbols, control, XCB_KEY_RELEASE);
    }
    play(connection, symbols, escapeKey, XCB_KEY_PRESS);
    play(connection, symbols, escapeKey, XCB_KEY_RELEASE);
    xcb_flush(connection);
}

/// Whether a key with Control held is the shortcut. Latin letters and signs have the same codes in Qt and X11.
bool matches(const StatusMenuEntry& entry, xcb_keysym_t key)
{
    const QKeySequence shortcut(entry.shortcut, QKeySequence::PortableText);
    return !shortcut.isEmpty() && shortcut[0].keyboardModifiers() == Qt::ControlModifier &&
           QChar::toLower(char32_t(shortcut[0].key())) == char32_t(key);
}

} // namespace

TaskbarMenuKeys::TaskbarMenuKeys() = default;
TaskbarMenuKeys::~TaskbarMenuKeys() = default;

void TaskbarMenuKeys::setEntries(QList<StatusMenuEntry> entries)
{
    m_entries = std::move(entries);
}

void TaskbarMenuKeys::menuOpened()
{
    m_sinceOpened.start();
    if (!m_keys) {
        m_keys = std::make_unique<X11InputMonitor>(X11InputMonitor::Kind::Keys);
        connect(m_keys.get(), &X11InputMonitor::pressed, this, &TaskbarMenuKeys::keyPressed);
        m_buttons = std::make_unique<X11InputMonitor>(X11InputMonitor::Kind::Buttons);
        connect(m_buttons.get(), &X11InputMonitor::pressed, this, &TaskbarMenuKeys::buttonPressed);
    }
}

void TaskbarMenuKeys::menuClosed()
{
    for (auto* const monitor : {&m_keys, &m_buttons}) {
        if (*monitor) {
            (*monitor)->disconnect(this);
            monitor->release()->deleteLater(); // it may be the sender of the current call
        }
    }
}

void TaskbarMenuKeys::buttonPressed(quint32 button)
{
    // A click on an entry or outside the menu closes it. A later keyboard grab, such as a full-screen program's, is not
    // the menu's.
    if (!X11InputMonitor::isWheel(button)) {
        menuClosed();
    }
}

void TaskbarMenuKeys::keyPressed(quint32 keyCode)
{
    xcb_connection_t* const connection = x11Connection();
    if (connection == nullptr || !menuHasKeyboard(connection)) {
        // A menu that is just opening has not grabbed the keyboard yet.
        if (m_sinceOpened.hasExpired(openingPatience.count())) {
            menuClosed();
        }
        return;
    }
    if (!onlyControlIsHeld(connection)) {
        return;
    }
    const KeySymbols symbols(xcb_key_symbols_alloc(connection), &xcb_key_symbols_free);
    const xcb_keysym_t key = xcb_key_symbols_get_keysym(symbols.get(), static_cast<xcb_keycode_t>(keyCode), 0);
    const auto entry =
        std::ranges::find_if(m_entries, [key](const StatusMenuEntry& candidate) { return matches(candidate, key); });
    if (entry != m_entries.end()) {
        closeMenu(connection, symbols);
        menuClosed();
        QMetaObject::invokeMethod(this, entry->action, Qt::QueuedConnection);
    }
}

} // namespace lapsa
