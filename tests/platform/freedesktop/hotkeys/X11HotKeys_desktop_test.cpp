// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "HelperProcess.h"
#include "X11KeyPresses.h"

#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

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

private:
    HelperProcess& m_other;
};

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runBesideTypingProgram<lapsa::test::X11HotKeysDesktopTest>(argc, argv);
}

#include "X11HotKeys_desktop_test.moc"
