// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#pragma once

#include "HelperProcess.h"
#include "HotKeys.h"
#include "SessionBus.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"
#include "X11HotKeys.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTest>

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>

// What the tests of the keys that are grabbed share.

namespace lapsa::test {

// Where the letters of a US keyboard are.
constexpr int usT = 28;
constexpr int usY = 29;
constexpr int usZ = 52;

void xdotool(const QStringList& arguments);

/// Presses the keys together, as they lie on the keyboard. Other than xdotool, it leaves the group alone.
void pressKeys(const QList<int>& keycodes);
/// With Super and Shift.
void pressKey(int keycode);

void setLayout(const QString& layout, const QString& variant = {});

/// The hot key, and how often it was pressed.
class CountedKey final
{
public:
    CountedKey();

    void unregister() { m_registration.reset(); }

    int presses = 0;

private:
    X11HotKeys m_hotKeys;
    std::unique_ptr<HotKeyRegistration> m_registration;
};

/// Another client of the X server, that wants the same key.
class OtherClient final
{
public:
    OtherClient();
    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;
    ~OtherClient();

    /// Whether it gets the key with these locks on.
    [[nodiscard]] bool grab(int locks = 0, int keycode = usY) const;
    void release() const;
    /// Whether a press of the key came to it.
    [[nodiscard]] bool pressed();

private:
    static std::uint16_t modifiers(int locks);

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    bool m_pressed = false;
};

/// Counts what the X server sends, repeats included.
class PressCounter final : public QAbstractNativeEventFilter
{
public:
    PressCounter();

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

    int count = 0;
};

/// A program whose window has the focus: writes a line when it is active first, and for everything that is typed.
inline const QString typingProgram = QStringLiteral("typing-program");
int showTypingProgram(int argc, char** argv);

/// The main function of such a test, a QObject made of the other program: on a real X server with a window manager.
template <typename Test>
int runBesideTypingProgram(int argc, char** argv)
{
    if (argc > 1 && QString::fromLocal8Bit(argv[1]) == typingProgram) {
        return showTypingProgram(argc, argv);
    }
    const TemporaryHome home;
    const SessionBus bus;
    const VirtualDisplay display;
    const WindowManager windowManager;
    HelperProcess other(QString::fromLocal8Bit(argv[0]), {typingProgram});
    const QApplication application(argc, argv);
    Test test(other);
    return QTest::qExec(&test, argc, argv);
}

} // namespace lapsa::test
