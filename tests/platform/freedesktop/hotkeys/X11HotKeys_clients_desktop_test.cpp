// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "X11KeyPresses.h"

#include <QRegularExpression>
#include <QTest>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;
constexpr int capsLock = XCB_MOD_MASK_LOCK;
constexpr int numLock = XCB_MOD_MASK_2;

} // namespace

/// The key, and another client of the X server that wants it.
class X11HotKeysClientsDesktopTest final : public QObject
{
    Q_OBJECT

public:
    explicit X11HotKeysClientsDesktopTest(HelperProcess& other)
        : m_other(other)
    {}

private slots:

    void initTestCase() { QCOMPARE(m_other.readLine(), u"active"_s); }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        setLayout(u"us"_s);
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

private:
    HelperProcess& m_other;
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runBesideTypingProgram<lapsa::test::X11HotKeysClientsDesktopTest>(argc, argv);
}

#include "X11HotKeys_clients_desktop_test.moc"
