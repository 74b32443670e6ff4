// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "X11KeyPresses.h"

#include "X11Screen.h"

#include <QKeyEvent>
#include <QWidget>

#include <xcb/xtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int leftShift = 50;
constexpr int leftSuper = 133;

HotKey superShiftY()
{
    return {.identifier = u"test"_s, .description = u"Test"_s, .letter = 'y', .super = true, .shift = true};
}

class TypingWindow final : public QWidget
{
protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_F5) {
            tell("F5");
        } else if (!event->text().isEmpty()) {
            tell(event->text().toUtf8());
        }
    }

    void changeEvent(QEvent* event) override
    {
        if (event->type() == QEvent::ActivationChange && isActiveWindow() && !std::exchange(m_told, true)) {
            tell("active");
        }
    }

private:
    static void tell(const QByteArray& line)
    {
        std::fprintf(stdout, "%s\n", line.constData());
        std::fflush(stdout);
    }

    bool m_told = false;
};

} // namespace

void xdotool(const QStringList& arguments)
{
    // It writes nothing.
    std::ignore = outputOf(u"xdotool"_s, arguments);
}

void pressKeys(const QList<int>& keycodes)
{
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const auto fake = [connection](int type, int keycode) {
        xcb_test_fake_input(connection, std::uint8_t(type), std::uint8_t(keycode), XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0,
                            0, 0);
    };
    std::ranges::for_each(keycodes, [&fake](int keycode) { fake(XCB_KEY_PRESS, keycode); });
    std::for_each(keycodes.crbegin(), keycodes.crend(), [&fake](int keycode) { fake(XCB_KEY_RELEASE, keycode); });
    // An answer to a later question means that it is done.
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    xcb_disconnect(connection);
}

void pressKey(int keycode)
{
    pressKeys({leftSuper, leftShift, keycode});
}

void setLayout(const QString& layout, const QString& variant)
{
    QStringList arguments{u"-option"_s, QString(), u"-option"_s, u"grp:menu_toggle"_s, u"-layout"_s, layout};
    if (!variant.isEmpty()) {
        arguments << u"-variant"_s << variant;
    }
    std::ignore = outputOf(u"setxkbmap"_s, arguments);
}

CountedKey::CountedKey()
    : m_hotKeys(x11Connection())
    , m_registration(m_hotKeys.registerHotKey(superShiftY(), [this] { ++presses; }))
{}

OtherClient::OtherClient()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
{}

OtherClient::~OtherClient()
{
    xcb_disconnect(m_connection);
}

bool OtherClient::grab(int locks, int keycode) const
{
    const std::unique_ptr<xcb_generic_error_t, void (*)(void*)> error(
        xcb_request_check(m_connection,
                          xcb_grab_key_checked(m_connection, 0, m_root, modifiers(locks), xcb_keycode_t(keycode),
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
        std::free);
    return error == nullptr;
}

void OtherClient::release() const
{
    xcb_ungrab_key(m_connection, usY, m_root, modifiers(0));
    // An answer to a later question means that this is done.
    std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
}

bool OtherClient::pressed()
{
    while (xcb_generic_event_t* const event = xcb_poll_for_event(m_connection)) {
        m_pressed = m_pressed || event->response_type == XCB_KEY_PRESS;
        std::free(event);
    }
    return m_pressed;
}

std::uint16_t OtherClient::modifiers(int locks)
{
    return std::uint16_t(XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT | locks);
}

PressCounter::PressCounter()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

bool PressCounter::nativeEventFilter(const QByteArray& /*type*/, void* message, qintptr* /*result*/)
{
    count += static_cast<const xcb_generic_event_t*>(message)->response_type == XCB_KEY_PRESS ? 1 : 0;
    return false;
}

int showTypingProgram(int argc, char** argv)
{
    const QApplication application(argc, argv);
    TypingWindow window;
    window.setGeometry(20, 700, 200, 200);
    window.show();
    return QApplication::exec();
}

} // namespace lapsa::test
