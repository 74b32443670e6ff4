// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "SessionBus.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"
#include "WindowManager.h"
#include "X11HotKeys.h"
#include "X11Screen.h"

#include <QAbstractNativeEventFilter>
#include <QApplication>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QTest>

#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <tuple>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;
const QString otherProgram = u"other-program"_s;

// Where the letters of a US keyboard are.
constexpr int usT = 28;
constexpr int usY = 29;
constexpr int usZ = 52;
constexpr int leftShift = 50;
constexpr int leftSuper = 133;
/// Switches to the next group of the layout.
constexpr int menu = 135;

constexpr int capsLock = XCB_MOD_MASK_LOCK;
constexpr int numLock = XCB_MOD_MASK_2;

HotKey superShiftY()
{
    return {.identifier = u"test"_s, .description = u"Test"_s, .letter = 'y', .super = true, .shift = true};
}

void xdotool(const QStringList& arguments)
{
    // It writes nothing.
    std::ignore = outputOf(u"xdotool"_s, arguments);
}

/// Presses the keys together, as they lie on the keyboard. Other than xdotool, it leaves the group alone.
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

void setLayout(const QString& layout, const QString& variant = {})
{
    QStringList arguments{u"-option"_s, QString(), u"-option"_s, u"grp:menu_toggle"_s, u"-layout"_s, layout};
    if (!variant.isEmpty()) {
        arguments << u"-variant"_s << variant;
    }
    std::ignore = outputOf(u"setxkbmap"_s, arguments);
}

/// The hot key, and how often it was pressed.
class CountedKey final
{
public:
    CountedKey()
        : m_hotKeys(x11Connection())
        , m_registration(m_hotKeys.registerHotKey(superShiftY(), [this] { ++presses; }))
    {}

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
    OtherClient()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
    {}

    OtherClient(const OtherClient&) = delete;
    OtherClient& operator=(const OtherClient&) = delete;

    ~OtherClient() { xcb_disconnect(m_connection); }

    /// Whether it gets the key with these locks on.
    [[nodiscard]] bool grab(int locks = 0, int keycode = usY) const
    {
        const std::unique_ptr<xcb_generic_error_t, void (*)(void*)> error(
            xcb_request_check(m_connection,
                              xcb_grab_key_checked(m_connection, 0, m_root, modifiers(locks), xcb_keycode_t(keycode),
                                                   XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)),
            std::free);
        return error == nullptr;
    }

    void release() const
    {
        xcb_ungrab_key(m_connection, usY, m_root, modifiers(0));
        // An answer to a later question means that this is done.
        std::free(xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }

    /// Whether a press of the key came to it.
    [[nodiscard]] bool pressed()
    {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(m_connection)) {
            m_pressed = m_pressed || event->response_type == XCB_KEY_PRESS;
            std::free(event);
        }
        return m_pressed;
    }

private:
    static std::uint16_t modifiers(int locks) { return std::uint16_t(XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT | locks); }

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    bool m_pressed = false;
};

/// Counts what the X server sends, repeats included.
class PressCounter final : public QAbstractNativeEventFilter
{
public:
    PressCounter() { QCoreApplication::instance()->installNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override
    {
        count += static_cast<const xcb_generic_event_t*>(message)->response_type == XCB_KEY_PRESS ? 1 : 0;
        return false;
    }

    int count = 0;
};

} // namespace

/// On a real X server with a window manager, while a window of another program has the focus.
class X11HotKeysDesktopTest final : public QObject
{
    Q_OBJECT

public:
    explicit X11HotKeysDesktopTest(HelperProcess& other)
        : m_other(other)
    {}

private slots:

    void initTestCase() { QCOMPARE(m_other.readLine(), u"active"_s); }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        setLayout(u"us"_s);
    }

    void aPressIsHeardWhileAnotherProgramHasTheFocus()
    {
        CountedKey key;

        pressKey(usY);

        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 1, patience);

        pressKey(usY);

        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 2, patience);
    }

    void theOtherProgramGetsNoLetter()
    {
        CountedKey key;
        pressKey(usY);
        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 1, patience);

        xdotool({u"key"_s, u"x"_s});
        QCOMPARE(m_other.readLine(), u"x"_s);

        key.unregister();
        pressKey(usY);
        QCOMPARE(m_other.readLine(), u"Y"_s);
    }

    void theLocksMakeNoDifference_data()
    {
        QTest::addColumn<QStringList>("locks");

        QTest::newRow("Caps Lock") << QStringList{u"Caps_Lock"_s};
        QTest::newRow("Num Lock") << QStringList{u"Num_Lock"_s};
        QTest::newRow("both") << QStringList{u"Caps_Lock"_s, u"Num_Lock"_s};
    }

    void theLocksMakeNoDifference()
    {
        QFETCH(const QStringList, locks);
        CountedKey key;

        xdotool(QStringList{u"key"_s} + locks);
        pressKey(usY);
        xdotool(QStringList{u"key"_s} + locks);

        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 1, patience);
    }

    void withFurtherOrFewerModifiersItIsAnotherKey()
    {
        CountedKey key;

        xdotool({u"key"_s, u"super+29"_s});
        QCOMPARE(m_other.readLine(), u"y"_s);
        xdotool({u"key"_s, u"super+shift+alt+29"_s});
        QCOMPARE(m_other.readLine(), u"Y"_s);
        pressKey(usY);

        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 1, patience);
    }

    void aKeyHeldDownCountsOnce()
    {
        CountedKey key;
        const PressCounter counter;

        xdotool({u"keydown"_s, u"super"_s, u"keydown"_s, u"shift"_s, u"keydown"_s, u"29"_s});
        QTRY_VERIFY_WITH_TIMEOUT(counter.count > 4, patience);
        xdotool({u"keyup"_s, u"29"_s, u"keyup"_s, u"shift"_s, u"keyup"_s, u"super"_s});
        QCOMPARE(key.presses, 1);

        pressKey(usY);
        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 2, patience);
    }

    void aKeyOfAnotherProgramDoesNothing_data()
    {
        QTest::addColumn<bool>("numLockOn");

        QTest::newRow("as the other one holds it") << false;
        QTest::newRow("with a lock that the other one forgot") << true;
    }

    void aKeyOfAnotherProgramDoesNothing()
    {
        QFETCH(const bool, numLockOn);
        OtherClient other;
        QVERIFY(other.grab());

        CountedKey key;

        if (numLockOn) {
            xdotool({u"key"_s, u"Num_Lock"_s});
            pressKey(usY);
            xdotool({u"key"_s, u"Num_Lock"_s});
            QCOMPARE(m_other.readLine(), u"Y"_s);
        } else {
            pressKey(usY);
            QTRY_VERIFY_WITH_TIMEOUT(other.pressed(), patience);
        }
        QCoreApplication::processEvents();
        QCOMPARE(key.presses, 0);
    }

    void aKeyThatBecameFreeIsTakenWhenTheLayoutChanges()
    {
        const OtherClient other;
        QVERIFY(other.grab());
        CountedKey key;
        other.release();
        pressKey(usY);
        QCOMPARE(m_other.readLine(), u"Y"_s);
        QCOMPARE(key.presses, 0);

        setLayout(u"fr"_s);

        QTRY_VERIFY_WITH_TIMEOUT(heard(key, usY), patience);
        QVERIFY(!other.grab());
    }

    void aKeyGivenBackIsFreeForOthers()
    {
        CountedKey key;
        OtherClient other;
        QVERIFY(!other.grab());

        key.unregister();

        // The server handles what each client asks in turn.
        QTRY_VERIFY_WITH_TIMEOUT(other.grab(), patience);
        QVERIFY(other.grab(capsLock));
        QVERIFY(other.grab(numLock));
        QVERIFY(other.grab(capsLock | numLock));
        pressKey(usY);
        QTRY_VERIFY_WITH_TIMEOUT(other.pressed(), patience);
        QCoreApplication::processEvents();
        QCOMPARE(key.presses, 0);
    }

    void aPressThatIsStillOnItsWayIsDroppedWithTheRegistration()
    {
        CountedKey key;
        const PressCounter counter;
        pressKey(usY);
        bool unregistered = false;
        QMetaObject::invokeMethod(
            this,
            [&] {
                key.unregister();
                unregistered = true;
            },
            Qt::QueuedConnection);

        QTRY_VERIFY_WITH_TIMEOUT(unregistered, patience);
        QTRY_COMPARE_WITH_TIMEOUT(counter.count, 1, patience);

        QCoreApplication::processEvents();
        QCOMPARE(key.presses, 0);
    }

    void theKeyFollowsTheLayout_data()
    {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<QString>("variant");
        QTest::addColumn<bool>("secondGroup");
        QTest::addColumn<int>("keycode");
        QTest::addColumn<int>("otherKeycode");

        QTest::newRow("German: Y and Z are exchanged") << u"de"_s << QString() << false << usZ << usY;
        QTest::newRow("French") << u"fr"_s << QString() << false << usY << usZ;
        QTest::newRow("Dvorak") << u"us"_s << u"dvorak"_s << false << usT << usY;
        QTest::newRow("Russian: no Latin letters") << u"ru"_s << QString() << false << usY << usZ;
        QTest::newRow("Russian, with German beside it") << u"ru,de"_s << QString() << false << usZ << usY;
        QTest::newRow("US, with German beside it") << u"us,de"_s << QString() << false << usY << usZ;
        QTest::newRow("switched from US to German") << u"us,de"_s << QString() << true << usZ << usY;
        QTest::newRow("switched from German to Greek") << u"de,gr"_s << QString() << true << usZ << usY;
    }

    void theKeyFollowsTheLayout()
    {
        QFETCH(const QString, layout);
        QFETCH(const QString, variant);
        QFETCH(const bool, secondGroup);
        QFETCH(const int, keycode);
        QFETCH(const int, otherKeycode);
        CountedKey key;

        setLayout(layout, variant);
        if (secondGroup) {
            pressKeys({menu});
        }

        QTRY_VERIFY_WITH_TIMEOUT(heard(key, keycode), patience);
        const OtherClient other;
        QTRY_VERIFY_WITH_TIMEOUT(other.grab(0, otherKeycode), patience);
        QVERIFY(!other.grab(0, keycode));
        drainOther();
    }

    void theLayoutOfTheMomentHoldsAtTheStart()
    {
        setLayout(u"de"_s);
        CountedKey key;

        pressKey(usZ);

        QTRY_COMPARE_WITH_TIMEOUT(key.presses, 1, patience);
    }

private:
    /// One press, and a look whether it was heard at once; what follows the layout takes a moment.
    [[nodiscard]] static bool heard(const CountedKey& key, int keycode)
    {
        const int before = key.presses;
        pressKey(keycode);
        return QTest::qWaitFor([&key, before] { return key.presses > before; }, 200);
    }

    /// Reads what presses before the change of the layout have typed there.
    void drainOther() const
    {
        xdotool({u"key"_s, u"F5"_s});
        while (m_other.readLine() != u"F5"_s) {
        }
    }

    HelperProcess& m_other;
};

namespace {

/// A plain window of another program: writes a line when it is active first, and for everything that is typed into it.
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

int showOtherProgram(int argc, char** argv)
{
    const QApplication application(argc, argv);
    TypingWindow window;
    window.setGeometry(20, 700, 200, 200);
    window.show();
    return QApplication::exec();
}

int run(int argc, char** argv)
{
    const TemporaryHome home;
    const SessionBus bus;
    const VirtualDisplay display;
    const WindowManager windowManager;
    HelperProcess other(QString::fromLocal8Bit(argv[0]), {otherProgram});
    const QApplication application(argc, argv);
    X11HotKeysDesktopTest test(other);
    return QTest::qExec(&test, argc, argv);
}

} // namespace

} // namespace lapsa::test

int main(int argc, char** argv)
{
    const bool other = argc > 1 && QString::fromLocal8Bit(argv[1]) == lapsa::test::otherProgram;
    return other ? lapsa::test::showOtherProgram(argc, argv) : lapsa::test::run(argc, argv);
}

#include "X11HotKeys_desktop_test.moc"
