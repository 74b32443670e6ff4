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
/// Switches to the next group of the layout.
constexpr int menu = 135;

} // namespace

/// The key on keyboards of several layouts.
class X11HotKeysLayoutsDesktopTest final : public QObject
{
    Q_OBJECT

public:
    explicit X11HotKeysLayoutsDesktopTest(HelperProcess& other)
        : m_other(other)
    {}

private slots:

    void initTestCase() { QCOMPARE(m_other.readLine(), u"active"_s); }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        setLayout(u"us"_s);
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

} // namespace lapsa::test

int main(int argc, char** argv)
{
    return lapsa::test::runBesideTypingProgram<lapsa::test::X11HotKeysLayoutsDesktopTest>(argc, argv);
}

#include "X11HotKeys_layouts_desktop_test.moc"
