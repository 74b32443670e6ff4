// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "TaskbarMenuKeys.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "X11InputMonitor.h"

#include <QGuiApplication>
#include <QTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

/// Another client that has the keyboard to itself, as an open menu has, or a program in full screen.
class Grab final
{
public:
    Grab()
        : m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect)
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root;
        const auto cookie =
            xcb_grab_keyboard(m_connection.get(), 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_grab_keyboard_reply_t* const reply = xcb_grab_keyboard_reply(m_connection.get(), cookie, nullptr);
        if (reply == nullptr || reply->status != XCB_GRAB_STATUS_SUCCESS) {
            qFatal("the keyboard is somebody else's");
        }
        std::free(reply); // NOLINT(cppcoreguidelines-no-malloc): made by the library
    }

private:
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> m_connection;
};

} // namespace

/// The keys of a menu that a taskbar shows, on a real X server.
class TaskbarMenuKeysDesktopTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_quits = 0;
        m_keys = std::make_unique<TaskbarMenuKeys>();
        m_keys->setEntries({{.title = u"Quit"_s, .shortcut = u"Ctrl+Q"_s, .action = [this] { ++m_quits; }}});
    }

    void cleanup()
    {
        std::ignore = outputOf(u"xdotool"_s, {u"keyup"_s, u"ctrl"_s});
        m_keys.reset();
    }

    void aShortcutIsHeardWhileTheMenuHasTheKeyboard()
    {
        m_keys->menuOpened();
        const Grab menu;

        pressWithControl(u"q"_s);

        QTRY_COMPARE_WITH_TIMEOUT(m_quits, 1, patience);
    }

    void aProgramThatTakesTheKeyboardAfterAClickIsNotTheMenu()
    {
        m_keys->menuOpened();
        // The taskbar does not report that this closes its menu.
        clickUntilItIsHeard(u"1"_s);
        const Grab otherProgram;

        pressWithControl(u"q"_s);
        expectNothing();

        QCOMPARE(m_quits, 0);
    }

    void theWheelDoesNotEndTheMenu()
    {
        m_keys->menuOpened();
        clickUntilItIsHeard(u"5"_s);
        const Grab menu;

        pressWithControl(u"q"_s);

        QTRY_COMPARE_WITH_TIMEOUT(m_quits, 1, patience);
    }

private:
    /// Control stays down, as under a hand that is slower than a program.
    static void pressWithControl(const QString& key)
    {
        std::ignore = outputOf(u"xdotool"_s, {u"keydown"_s, u"ctrl"_s, u"key"_s, key});
    }

    /// Whoever listened before has heard it as well.
    static void clickUntilItIsHeard(const QString& button)
    {
        X11InputMonitor listener(X11InputMonitor::Kind::Buttons);
        int presses = 0;
        connect(&listener, &X11InputMonitor::pressed, &listener, [&presses] { ++presses; });
        std::ignore = outputOf(u"xdotool"_s, {u"click"_s, button});
        QTRY_COMPARE_WITH_TIMEOUT(presses, 1, patience);
        QCoreApplication::processEvents();
    }

    /// A key that was pressed later has been heard, by somebody who listens in the same way.
    static void expectNothing()
    {
        int witnessed = 0;
        TaskbarMenuKeys witness;
        witness.setEntries({{.title = u"Witness"_s, .shortcut = u"Ctrl+W"_s, .action = [&witnessed] { ++witnessed; }}});
        witness.menuOpened();
        pressWithControl(u"w"_s);
        QTRY_COMPARE_WITH_TIMEOUT(witnessed, 1, patience);
    }

    std::unique_ptr<TaskbarMenuKeys> m_keys;
    int m_quits = 0;
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    // Before the application, which connects to it.
    const lapsa::test::TemporaryHome home;
    const lapsa::test::VirtualDisplay display;
    const QGuiApplication application(argc, argv);
    lapsa::test::TaskbarMenuKeysDesktopTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TaskbarMenuKeys_desktop_test.moc"
