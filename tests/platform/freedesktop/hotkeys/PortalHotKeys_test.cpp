// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "PlayedService.h"
#include "PortalHotKeys.h"
#include "RecordingDesktop.h"
#include "SessionBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString portalInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString requestInterface = u"org.freedesktop.portal.Request"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;

HotKey superShiftY()
{
    return {.identifier = u"add"_s, .description = u"Add the selection"_s, .letter = 'y', .super = true, .shift = true};
}

/// How the played portal answers a method.
enum class Manner
{
    Grants,
    /// Answers before the reply that says where to listen.
    GrantsAtOnce,
    /// Puts the request somewhere else than it has to.
    GrantsElsewhere,
    Refuses,
    Fails,
    NeverResponds,
};

/// What was asked to be bound.
struct Bound
{
    QString session;
    QString identifier;
    QVariantMap properties;
};

} // namespace

/// A portal that is played, on a bus connection of its own, with all the objects that it makes.
class PlayedPortal final : public QDBusVirtualObject
{
    Q_OBJECT

public:
    explicit PlayedPortal(const QString& address, Manner create = Manner::Grants, Manner bind = Manner::Grants)
        : m_connection(QDBusConnection::connectToBus(address, u"portal-%1"_s.arg(++s_count)))
        , m_create(create)
        , m_bind(bind)
    {
        m_connection.registerVirtualObject(portalPath, this, QDBusConnection::SubPath);
        if (!m_connection.registerService(u"org.freedesktop.portal.Desktop"_s)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedPortal() override { leaveBus(this, portalPath, m_connection); }

    [[nodiscard]] QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override
    {
        if (message.interface() == portalInterface && message.member() == u"CreateSession"_s) {
            createSession(message);
        } else if (message.interface() == portalInterface && message.member() == u"BindShortcuts"_s) {
            bindShortcuts(message);
        } else if (message.member() == u"Close"_s) {
            closed.push_back({message.path(), message.interface()});
        } else {
            return false;
        }
        return true;
    }

    void activate(const QString& session, const QString& identifier)
    {
        auto signal = QDBusMessage::createSignal(portalPath, portalInterface, u"Activated"_s);
        signal << QVariant::fromValue(QDBusObjectPath(session)) << identifier << qulonglong(1) << QVariantMap();
        m_connection.send(signal);
    }

    void closeSession(const QString& session)
    {
        auto signal = QDBusMessage::createSignal(session, sessionInterface, u"Closed"_s);
        signal << QVariantMap();
        m_connection.send(signal);
    }

    int sessionsAskedFor = 0;
    QList<Bound> bound;
    /// Paths and interfaces.
    QList<std::pair<QString, QString>> closed;

private:
    static QString placeOf(const QString& kind, const QDBusMessage& message, const QString& token)
    {
        return u"%1/%2/%3/%4"_s.arg(portalPath, kind, message.service().remove(u':').replace(u'.', u'_'), token);
    }

    void createSession(const QDBusMessage& message)
    {
        ++sessionsAskedFor;
        const auto options = qdbus_cast<QVariantMap>(message.arguments().value(0));
        const QString session = placeOf(u"session"_s, message, options[u"session_handle_token"_s].toString());
        respond(message, m_create, options, {{u"session_handle"_s, session}});
    }

    void bindShortcuts(const QDBusMessage& message)
    {
        const auto session = message.arguments().value(0).value<QDBusObjectPath>().path();
        const auto shortcuts = message.arguments().value(1).value<QDBusArgument>();
        shortcuts.beginArray();
        while (!shortcuts.atEnd()) {
            Bound shortcut{.session = session, .identifier = {}, .properties = {}};
            shortcuts.beginStructure();
            shortcuts >> shortcut.identifier >> shortcut.properties;
            shortcuts.endStructure();
            bound.push_back(shortcut);
        }
        shortcuts.endArray();
        respond(message, m_bind, qdbus_cast<QVariantMap>(message.arguments().value(3)), {});
    }

    void respond(const QDBusMessage& message, Manner manner, const QVariantMap& options, const QVariantMap& results)
    {
        if (manner == Manner::Fails) {
            m_connection.send(message.createErrorReply(QDBusError::UnknownMethod, u"No such method"_s));
            return;
        }
        const QString token = options[u"handle_token"_s].toString();
        const QString path =
            placeOf(u"request"_s, message, manner == Manner::GrantsElsewhere ? u"elsewhere"_s + token : token);
        const QDBusMessage reply = message.createReply(QVariant::fromValue(QDBusObjectPath(path)));
        auto response = QDBusMessage::createSignal(path, requestInterface, u"Response"_s);
        response << uint(manner == Manner::Refuses ? 1 : 0) << results;
        if (manner == Manner::GrantsAtOnce) {
            m_connection.send(response);
        }
        m_connection.send(reply);
        if (manner == Manner::GrantsElsewhere) {
            // Nobody can listen there before the reply has come, and nobody says when it has.
            repeat(response);
        } else if (manner == Manner::Grants || manner == Manner::Refuses) {
            m_connection.send(response);
        }
    }

    void repeat(const QDBusMessage& signal)
    {
        auto* timer = new QTimer(this);
        connect(timer, &QTimer::timeout, this, [this, signal] { m_connection.send(signal); });
        timer->start(std::chrono::milliseconds(20));
    }

    static inline int s_count = 0;
    QDBusConnection m_connection;
    Manner m_create;
    Manner m_bind;
};

namespace {

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
        QCOMPARE(portal.closed[0].second, requestInterface);
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
        QCOMPARE(portal.closed[0], std::pair(portal.bound[0].session, sessionInterface));
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
        if (!portal.bound.isEmpty()) {
            portal.activate(portal.bound.constLast().session, u"add"_s);
        }
        return QTest::qWaitFor([&key, before] { return key.presses > before; }, 200);
    }

    SessionBus m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::PortalHotKeysTest)
#include "PortalHotKeys_test.moc"
