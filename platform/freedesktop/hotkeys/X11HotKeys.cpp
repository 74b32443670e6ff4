// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11HotKeys.h"

#include "X11Keyboard.h"
#include "XcbPointer.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QList>
#include <QObject>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

namespace lapsa {

namespace {

// Events of the keyboard extension ("X Keyboard Extension: Protocol Specification"): all share one number, the second
// byte holds their kind, and the fourteenth the group in a state notification.
constexpr std::uint8_t newKeyboard = 0;
constexpr std::uint8_t mapChanged = 1;
constexpr std::uint8_t stateChanged = 2;
constexpr std::size_t groupOffset = 13;

/// The state of a key event also contains the mouse buttons and the group.
constexpr std::uint16_t allModifiers = 0xff;

/// One passive grab.
struct Grab
{
    xcb_window_t root;
    xcb_keycode_t key;
    std::uint16_t modifiers;

    friend bool operator==(const Grab&, const Grab&) = default;
};

QList<xcb_window_t> rootsOf(xcb_connection_t* connection)
{
    QList<xcb_window_t> roots;
    for (auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection)); screen.rem > 0; xcb_screen_next(&screen)) {
        roots.push_back(screen.data->root);
    }
    return roots;
}

/// All combinations of some modifiers, including none of them.
QList<std::uint16_t> combinationsOf(std::uint16_t modifiers)
{
    QList<std::uint16_t> combinations;
    std::uint16_t combination = modifiers;
    while (combination != 0) {
        combinations.push_back(combination);
        combination = (combination - 1) & modifiers;
    }
    combinations.push_back(0);
    return combinations;
}

/// Holds the grabs of one key, one for each state of the lock keys, and handles their events.
class X11Registration final : public HotKeyRegistration, public QAbstractNativeEventFilter
{
public:
    X11Registration(xcb_connection_t* connection, HotKey key, std::function<void()> pressed)
        : m_connection(connection)
        , m_key(std::move(key))
        , m_pressed(std::move(pressed))
        , m_extensionEvent(X11Keyboard::setUp(connection))
    {
        update();
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    X11Registration(const X11Registration&) = delete;
    X11Registration& operator=(const X11Registration&) = delete;

    ~X11Registration() override { release(std::exchange(m_grabs, {})); }

    bool nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/) override
    {
        // Events sent by another client have the highest bit set, and are not key presses.
        const auto* const event = static_cast<const xcb_generic_event_t*>(message);
        if (event->response_type == XCB_KEY_PRESS) {
            keyPressed(*static_cast<const xcb_key_press_event_t*>(message));
        } else if (event->response_type == XCB_KEY_RELEASE) {
            m_released = static_cast<const xcb_key_release_event_t*>(message)->time;
        } else if (event->response_type == XCB_MAPPING_NOTIFY ||
                   (m_extensionEvent && event->response_type == *m_extensionEvent && changesKeys(*event))) {
            updateSoon();
        }
        // The toolkit must see the event too: it needs the time of the key press to activate a window afterwards.
        return false;
    }

private:
    void keyPressed(const xcb_key_press_event_t& event)
    {
        // A held key repeats as a release and a press with the same timestamp.
        const bool repeated = m_released == event.time;
        const Grab grab{
            .root = event.event, .key = event.detail, .modifiers = std::uint16_t(event.state & allModifiers)};
        if (!repeated && m_grabs.contains(grab)) {
            // Queued, because it may take long, and events must not be handled inside another event.
            QMetaObject::invokeMethod(&m_context, m_pressed, Qt::QueuedConnection);
        }
    }

    [[nodiscard]] bool changesKeys(const xcb_generic_event_t& event)
    {
        const std::uint8_t kind = event.pad0;
        if (kind == stateChanged) {
            const std::uint8_t group = reinterpret_cast<const std::uint8_t*>(&event)[groupOffset];
            return std::exchange(m_group, group) != group;
        }
        return kind == newKeyboard || kind == mapChanged;
    }

    /// Runs once after a burst of changes.
    void updateSoon()
    {
        if (!std::exchange(m_updateDue, true)) {
            QMetaObject::invokeMethod(
                &m_context, [this] { update(); }, Qt::QueuedConnection);
        }
    }

    void update()
    {
        m_updateDue = false;
        const QList<Grab> wanted = wantedGrabs();
        QList<Grab> missing;
        QList<Grab> superfluous;
        std::ranges::copy_if(wanted, std::back_inserter(missing),
                             [this](const Grab& grab) { return !m_grabs.contains(grab); });
        std::ranges::copy_if(m_grabs, std::back_inserter(superfluous),
                             [&wanted](const Grab& grab) { return !wanted.contains(grab); });
        release(superfluous);
        m_grabs = wanted;
        if (!take(missing)) {
            // A key that works only with Caps Lock is useless.
            release(std::exchange(m_grabs, {}));
        }
    }

    [[nodiscard]] QList<Grab> wantedGrabs() const
    {
        const X11Keyboard keyboard(m_connection);
        std::uint16_t modifiers = m_key.shift ? XCB_MOD_MASK_SHIFT : 0;
        if (m_key.super) {
            const std::uint16_t super = keyboard.modifiersOf({XKB_KEY_Super_L, XKB_KEY_Super_R});
            modifiers |= super != 0 ? super : std::uint16_t(XCB_MOD_MASK_4);
        }
        const auto locks = std::uint16_t(
            (XCB_MOD_MASK_LOCK | keyboard.modifiersOf({XKB_KEY_Num_Lock, XKB_KEY_Scroll_Lock})) & ~modifiers);
        QList<Grab> grabs;
        for (const xcb_window_t root : rootsOf(m_connection)) {
            for (const xcb_keycode_t key : keyboard.keysTyping(m_key.letter)) {
                for (const std::uint16_t locked : combinationsOf(locks)) {
                    grabs.push_back({.root = root, .key = key, .modifiers = std::uint16_t(modifiers | locked)});
                }
            }
        }
        return grabs;
    }

    /// False if another program holds one of them; the others are grabbed anyway.
    [[nodiscard]] bool take(const QList<Grab>& grabs) const
    {
        constexpr std::uint8_t toUsOnly = 0;
        QList<xcb_void_cookie_t> cookies;
        for (const Grab& grab : grabs) {
            cookies.push_back(xcb_grab_key_checked(m_connection, toUsOnly, grab.root, grab.modifiers, grab.key,
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        }
        bool taken = true;
        for (const xcb_void_cookie_t cookie : cookies) {
            const auto error = xcbPointer(xcb_request_check(m_connection, cookie));
            taken = taken && !error;
        }
        return taken;
    }

    /// Grabs that we do not hold are not affected.
    void release(const QList<Grab>& grabs) const
    {
        for (const Grab& grab : grabs) {
            xcb_ungrab_key(m_connection, grab.key, grab.root, grab.modifiers);
        }
        xcb_flush(m_connection);
    }

    xcb_connection_t* m_connection;
    HotKey m_key;
    std::function<void()> m_pressed;
    std::optional<std::uint8_t> m_extensionEvent;
    /// Either all the grabs of the key, or empty.
    QList<Grab> m_grabs;
    std::optional<xcb_timestamp_t> m_released;
    std::optional<std::uint8_t> m_group;
    bool m_updateDue = false;
    /// Queued calls are dropped with it.
    QObject m_context;
};

} // namespace

X11HotKeys::X11HotKeys(xcb_connection_t* connection)
    : m_connection(connection)
{}

std::unique_ptr<HotKeyRegistration> X11HotKeys::registerHotKey(const HotKey& key, std::function<void()> pressed)
{
    return std::make_unique<X11Registration>(m_connection, key, std::move(pressed));
}

} // namespace lapsa
