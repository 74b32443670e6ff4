// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedPortal.h"
#include "PortalHotKeys.h"
#include "RecordingDesktop.h"
#include "SessionBus.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>

#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

HotKey superShiftY()
{
    return {.identifier = u"add"_s, .description = u"Add the selection"_s, .letter = 'y', .super = true, .shift = true};
}

/// A key of the portal, with a fallback that is only noted down.
class CountedKey final
{
public:
    CountedKey()
        : CountedKey(std::make_unique<RecordingHotKeys>())
    {}

    /// Whether the fallback is what gives the key now.
    [[nodiscard]] bool fallenBack() const { return fallback.registered.size() > fallback.released; }

    void unregister() { m_registration.reset(); }

private:
    explicit CountedKey(std::unique_ptr<RecordingHotKeys> recording)
        : fallback(*recording)
        , m_hotKeys(std::move(recording))
        , m_registration(m_hotKeys.registerHotKey(superShiftY(), [this] { ++presses; }))
    {}

public:
    int presses = 0;
    RecordingHotKeys& fallback;

private:
    PortalHotKeys m_hotKeys;
    std::unique_ptr<HotKeyRegistration> m_registration;
};

} // namespace

class PortalHotKeysTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        // But for what the library says of itself when a name changes hands while it asks for its owner.
        QTest::failOnWarning(QRegularExpression(u"^(?!QDBusConnection: name )"_s));
    }

    // The first one: in a fresh process the toolkit knows no types of the bus yet.
    void anActivationCallsTheHandlerOnce_data()
    {
        QTest::addColumn<Manner>("manner");
        QTest::newRow("as documented") << Manner::Grants;
        QTest::newRow("answered before the reply") << Manner::GrantsAtOnce;
        QTest::newRow("requests at another path") << Manner::GrantsElsewhere;
    }

    void anActivationCallsTheHandlerOnce()
    {
        QFETCH(const Manner, manner);
        PlayedPortal portal(m_bus.address(), manner, manner);
        const CountedKey key;
        QTRY_COMPARE_WITH_TIMEOUT(portal.bound.size(), 1, patience);

        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);

        const int before = key.presses;
        portal.activate(portal.bound[0].session, u"add"_s);
        portal.activate(portal.bound[0].session, u"add"_s);
        QTRY_COMPARE_WITH_TIMEOUT(key.presses, before + 2, patience);
        QVERIFY(!key.fallenBack());
    }

    void theKeyIsBoundWithItsTriggerAndDescription()
    {
        const PlayedPortal portal(m_bus.address());
        const CountedKey key;

        QTRY_COMPARE_WITH_TIMEOUT(portal.bound.size(), 1, patience);

        QCOMPARE(portal.bound[0].identifier, u"add"_s);
        QCOMPARE(portal.bound[0].properties[u"preferred_trigger"_s].toString(), u"LOGO+SHIFT+y"_s);
        QCOMPARE(portal.bound[0].properties[u"description"_s].toString(), u"Add the selection"_s);
        QVERIFY(!key.fallenBack());
    }

    void aKeyThatTheDesktopHasIsNotBoundAgain()
    {
        for (const bool fromTheSession : {false, true}) {
            PlayedPortal portal(m_bus.address());
            portal.takesKeysWithTheSession = fromTheSession;
            portal.known = {u"other"_s, fromTheSession ? u"another"_s : u"add"_s};
            const CountedKey key;
            QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);
            QCOMPARE(portal.bound.size(), 0);
            QVERIFY(!key.fallenBack());
        }
    }

    void aKeyThatTheDesktopHasNotKeptIsBound_data()
    {
        QTest::addColumn<bool>("listFails");
        QTest::newRow("another is known") << false;
        QTest::newRow("nobody can say") << true;
    }

    void aKeyThatTheDesktopHasNotKeptIsBound()
    {
        QFETCH(const bool, listFails);
        PlayedPortal portal(m_bus.address());
        portal.known = {u"other"_s};
        portal.listFails = listFails;
        const CountedKey key;

        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);

        QCOMPARE(portal.listsAskedFor, 1);
        QCOMPARE(portal.bound.size(), 1);
    }

    void keysOfOthersAreIgnored()
    {
        PlayedPortal portal(m_bus.address());
        const CountedKey key;
        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);
        const int before = key.presses;

        portal.activate(portal.bound[0].session, u"other"_s);
        portal.activate(u"/org/freedesktop/portal/desktop/session/1_1/other"_s, u"add"_s);
        portal.activate(portal.bound[0].session, u"add"_s);

        QTRY_COMPARE_WITH_TIMEOUT(key.presses, before + 1, patience);
    }

    void aPortalThatDoesNotGiveTheKeyIsReplacedSilently_data()
    {
        QTest::addColumn<Manner>("create");
        QTest::addColumn<Manner>("bind");

        QTest::newRow("no such interface") << Manner::Fails << Manner::Grants;
        QTest::newRow("no session") << Manner::Refuses << Manner::Grants;
        QTest::newRow("the key fails") << Manner::Grants << Manner::Fails;
        QTest::newRow("the user refuses the key") << Manner::Grants << Manner::Refuses;
    }

    void aPortalThatDoesNotGiveTheKeyIsReplacedSilently()
    {
        QFETCH(const Manner, create);
        QFETCH(const Manner, bind);
        const PlayedPortal portal(m_bus.address(), create, bind);
        const CountedKey key;

        QTRY_VERIFY_WITH_TIMEOUT(key.fallenBack(), patience);

        QCOMPARE(key.fallback.registered, QList<HotKey>{superShiftY()});
        key.fallback.press();
        QCOMPARE(key.presses, 1);
    }

    void withoutAPortalTheFallbackGivesTheKey()
    {
        const CountedKey key;

        QTRY_VERIFY_WITH_TIMEOUT(key.fallenBack(), patience);
    }

    void aPortalThatComesLaterTakesOverFromTheFallback()
    {
        const CountedKey key;
        QTRY_VERIFY_WITH_TIMEOUT(key.fallenBack(), patience);

        PlayedPortal portal(m_bus.address());

        QTRY_VERIFY_WITH_TIMEOUT(!key.fallenBack(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);
        QCOMPARE(portal.sessionsAskedFor, 1);
        QCOMPARE(key.fallback.registered.size(), 1);
    }

    void aPortalThatDiesAndComesBackBindsAnew()
    {
        std::optional<PlayedPortal> portal;
        portal.emplace(m_bus.address());
        const CountedKey key;
        QTRY_VERIFY_WITH_TIMEOUT(heard(*portal, key), patience);

        portal.reset();
        QTRY_VERIFY_WITH_TIMEOUT(key.fallenBack(), patience);
        portal.emplace(m_bus.address());

        QTRY_VERIFY_WITH_TIMEOUT(!key.fallenBack(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(heard(*portal, key), patience);
        QCOMPARE(portal->bound.size(), 1);
    }

    void aSessionThatThePortalEndsIsReplacedByTheFallback()
    {
        PlayedPortal portal(m_bus.address());
        const CountedKey key;
        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);
        const int before = key.presses;

        portal.closeSession(portal.bound[0].session);
        portal.activate(portal.bound[0].session, u"add"_s);

        QTRY_VERIFY_WITH_TIMEOUT(key.fallenBack(), patience);
        key.fallback.press();
        QTRY_COMPARE_WITH_TIMEOUT(key.presses, before + 1, patience);
    }

    void aPortalThatNeverRespondsHoldsNobodyUp()
    {
        PlayedPortal portal(m_bus.address(), Manner::NeverResponds);
        // A call that waits does so for 25 seconds; a busy machine may be late by much of one.
        constexpr qint64 limit = 5000;
        QElapsedTimer timer;
        timer.start();

        CountedKey key;

        QVERIFY2(timer.elapsed() < limit, qPrintable(QString::number(timer.elapsed())));
        QTRY_COMPARE_WITH_TIMEOUT(portal.sessionsAskedFor, 1, patience);
        portal.activate(u"/"_s, u"add"_s);
        key.unregister();
        QTRY_COMPARE_WITH_TIMEOUT(portal.closed.size(), 1, patience);
        QCOMPARE(portal.closed[0].second, PlayedPortal::requestInterface);
        QCOMPARE(key.presses, 0);
    }

    void givingTheKeyBackClosesTheSession()
    {
        PlayedPortal portal(m_bus.address());
        CountedKey key;
        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, key), patience);
        const CountedKey other;
        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, other), patience);
        const int before = key.presses;

        key.unregister();

        QTRY_COMPARE_WITH_TIMEOUT(portal.closed.size(), 1, patience);
        QCOMPARE(portal.closed[0], std::pair(portal.bound[0].session, PlayedPortal::sessionInterface));
        portal.activate(portal.bound[0].session, u"add"_s);
        QTRY_VERIFY_WITH_TIMEOUT(heard(portal, other), patience);
        QCOMPARE(key.presses, before);
    }

    void givingBackAKeyOfTheFallbackGivesItBackThere()
    {
        CountedKey key;
        QTRY_VERIFY_WITH_TIMEOUT(key.fallenBack(), patience);

        key.unregister();

        QVERIFY(!key.fallenBack());
    }

private:
    /// One press, and a look whether it is heard; that the key is bound takes a moment to get around.
    [[nodiscard]] static bool heard(PlayedPortal& portal, const CountedKey& key)
    {
        const int before = key.presses;
        if (!portal.lastSession.isEmpty()) {
            portal.activate(portal.lastSession, u"add"_s);
        }
        return QTest::qWaitFor([&key, before] { return key.presses > before; }, 200);
    }

    SessionBus m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::PortalHotKeysTest)
#include "PortalHotKeys_test.moc"
