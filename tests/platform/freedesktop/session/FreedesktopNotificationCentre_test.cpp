// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "FreedesktopNotificationCentre.h"
#include "LogCapture.h"
#include "NotificationCentre.h"
#include "PlayedService.h"
#include "ProcessFigures.h"
#include "SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QEvent>
#include <QSignalSpy>
#include <QTest>
#include <QVariantMap>

#include <limits>
#include <memory>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 20'000;

const QString name = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;

using UserInfo = QHash<QString, QString>;

NotificationRequest request(const QString& identifier, const QString& body = u"body"_s)
{
    return {.identifier = identifier,
            .title = u"Lapsa <alert>"_s,
            .body = body,
            .actionLabel = u"Lock"_s,
            .userInfo = {{u"itemId"_s, identifier}}};
}

} // namespace

/// A notification server that is played, on a bus connection of its own.
class PlayedServer final : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notification
    {
        uint replaces = 0;
        QString summary;
        QString body;
        QStringList actions;
        QVariantMap hints;
    };

    explicit PlayedServer(const QString& address, bool takesName = true)
        : m_connection(QDBusConnection::connectToBus(address, u"server-%1"_s.arg(++s_count)))
    {
        m_connection.registerObject(path, this, QDBusConnection::ExportScriptableSlots);
        if (takesName && !m_connection.registerService(name)) {
            qFatal("the name is taken");
        }
    }

    ~PlayedServer() override { leaveBus(this, path, m_connection); }

    void invoke(uint id, const QString& action) { signal(u"ActionInvoked"_s, {id, action}); }

    void close(uint id, uint reason) { signal(u"NotificationClosed"_s, {id, reason}); }

    /// Sends whatever it is told.
    void signal(const QString& member, const QVariantList& arguments)
    {
        auto message = QDBusMessage::createSignal(path, name, member);
        message.setArguments(arguments);
        m_connection.send(message);
    }

    /// Answers the calls that were kept with that, whatever it is.
    void answerAllWith(const QVariantList& arguments)
    {
        holdsBack = false;
        for (const QDBusMessage& call : std::exchange(m_kept, {})) {
            m_connection.send(call.createReply(arguments));
        }
    }

    /// Answers the calls that were kept.
    void answerAll()
    {
        holdsBack = false;
        for (const QDBusMessage& call : std::exchange(m_kept, {})) {
            m_connection.send(call.createReply(nextId++));
        }
    }

    QList<Notification> shown;
    QStringList capabilities{u"actions"_s, u"body"_s, u"body-markup"_s};
    int capabilityQuestions = 0;
    bool holdsBack = false;
    uint nextId = 1;

public slots:

    Q_SCRIPTABLE QStringList GetCapabilities()
    {
        ++capabilityQuestions;
        return capabilities;
    }

    Q_SCRIPTABLE uint Notify(const QString& /*application*/, uint replaces, const QString& /*icon*/,
                             const QString& summary, const QString& body, const QStringList& actions,
                             const QVariantMap& hints, int /*timeout*/)
    {
        shown.push_back({replaces, summary, body, actions, hints});
        if (holdsBack) {
            setDelayedReply(true);
            m_kept.push_back(message());
            return 0;
        }
        return replaces != 0 ? replaces : nextId++;
    }

private:
    static inline int s_count = 0;
    QDBusConnection m_connection;
    QList<QDBusMessage> m_kept;
};

class FreedesktopNotificationCentreTest final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_server = std::make_unique<PlayedServer>(m_bus.address()); }

    void cleanup() { m_server.reset(); }

    void aRequestIsShownWithOneButtonAndTheDefaultSound()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        centre.add(request(u"a"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);

        const PlayedServer::Notification& shown = m_server->shown.constFirst();

        QCOMPARE(shown.replaces, 0U);
        QCOMPARE(shown.actions, QStringList({u"default"_s, u""_s, u"lock"_s, u"Lock"_s}));
        QCOMPARE(shown.hints[u"desktop-entry"_s].toString(), u"org.example.Viewer"_s);
        QCOMPARE(shown.hints[u"sound-name"_s].toString(), u"message-new-instant"_s);
        QCOMPARE(shown.hints[u"urgency"_s], QVariant::fromValue(uchar(1)));
    }

    void markupInABodyIsEscapedAndTheTitleIsPlain()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        centre.add(request(u"a"_s, u"<b>R&D</b> 100%d &amp;"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);

        QCOMPARE(m_server->shown[0].body, u"&lt;b&gt;R&amp;D&lt;/b&gt; 100%d &amp;amp;"_s);
        QCOMPARE(m_server->shown[0].summary, u"Lapsa <alert>"_s);
    }

    void aServerWithoutMarkupGetsABodyAsItIs_data()
    {
        QTest::addColumn<QStringList>("capabilities");

        QTest::newRow("a server without markup") << QStringList{u"actions"_s, u"body"_s};
        QTest::newRow("a server that can do nothing") << QStringList();
        QTest::newRow("capabilities that only sound like it")
            << QStringList{u"body-markup-x"_s, u"BODY-MARKUP"_s, u"body"_s};
    }

    void aServerWithoutMarkupGetsABodyAsItIs()
    {
        QFETCH(const QStringList, capabilities);
        m_server->capabilities = capabilities;
        FreedesktopNotificationCentre centre(exampleProgram());
        centre.add(request(u"a"_s, u"<b>R&D</b>"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);

        QCOMPARE(m_server->shown[0].body, u"<b>R&D</b>"_s);
    }

    void theNextServerIsAskedAnew()
    {
        m_server->capabilities = {u"body"_s};
        FreedesktopNotificationCentre centre(exampleProgram());
        show(centre, u"a"_s);

        m_server.reset();
        m_server = std::make_unique<PlayedServer>(m_bus.address());
        letTheBusAnswer();
        centre.add(request(u"b"_s, u"R&D"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);
        QCOMPARE(m_server->shown[0].body, u"R&amp;D"_s);

        m_server.reset();
        m_server = std::make_unique<PlayedServer>(m_bus.address());
        m_server->capabilities = {u"body"_s};
        letTheBusAnswer();
        centre.add(request(u"c"_s, u"R&D"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);
        QCOMPARE(m_server->shown[0].body, u"R&D"_s);
    }

    void oneServerIsAskedOnceForManyRequests()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        for (const QString& identifier : {u"a"_s, u"b"_s, u"c"_s}) {
            centre.add(request(identifier));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 3, patience);
        show(centre, u"d"_s);

        QCOMPARE(m_server->capabilityQuestions, 1);
    }

    void aLaterRequestWithTheSameIdentifierReplacesTheEarlier()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        show(centre, u"a"_s);
        show(centre, u"b"_s);

        centre.add(request(u"a"_s, u"again"_s));

        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 3, patience);
        QCOMPARE(m_server->shown[2].replaces, 1U);
    }

    void requestsMadeWhileTheFirstIsUnderWayReplaceItAndTheLastWins()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        show(centre, u"earlier"_s);
        m_server->holdsBack = true;
        centre.add(request(u"a"_s, u"one"_s));
        centre.add(request(u"a"_s, u"two"_s));
        centre.add(request(u"a"_s, u"three"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 2, patience);
        QCOMPARE(m_server->shown[1].body, u"one"_s);

        m_server->answerAll();

        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 3, patience);
        QCOMPARE(m_server->shown[2].body, u"three"_s);
        QCOMPARE(m_server->shown[2].replaces, 2U);
    }

    void anActionHandsTheUserInfoBack_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("responses");

        QTest::newRow("a click on the notification") << u"default"_s << 1;
        QTest::newRow("its button") << u"lock"_s << 1;
        QTest::newRow("an action that was never offered") << u"other"_s << 0;
    }

    void anActionHandsTheUserInfoBack()
    {
        QFETCH(const QString, action);
        QFETCH(const int, responses);
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server->invoke(1, action);
        settle(centre);

        QCOMPARE(spy.size(), responses);
        if (responses > 0) {
            QCOMPARE(spy[0][0].value<UserInfo>(), (UserInfo{{u"itemId"_s, u"a"_s}}));
        }
    }

    void aDismissalIsNoClickAndForgetsTheNumber()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server->close(1, 2);
        m_server->invoke(1, u"default"_s);
        settle(centre);
        centre.add(request(u"a"_s, u"again"_s));

        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.constLast().body, u"again"_s, patience);
        QCOMPARE(m_server->shown.constLast().replaces, 0U);
        QCOMPARE(spy.size(), 0);
    }

    void numbersOfOthersMeanNothing()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server->invoke(0, u"default"_s);
        m_server->invoke(2, u"default"_s);
        settle(centre);

        QCOMPARE(spy.size(), 0);
    }

    void aSignalFromSomeoneWhoIsNotTheServerMeansNothing()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);
        PlayedServer forger(m_bus.address(), false);

        forger.invoke(1, u"default"_s);
        settle(centre);

        QCOMPARE(spy.size(), 0);
    }

    void aSignalThatMakesNoSenseIsNoClickAndNoDismissal_data()
    {
        QTest::addColumn<QString>("member");
        QTest::addColumn<QVariantList>("arguments");

        const QString invoked = u"ActionInvoked"_s;
        const QString closed = u"NotificationClosed"_s;
        constexpr uint farthest = std::numeric_limits<uint>::max();
        QTest::newRow("a click on the farthest number") << invoked << QVariantList{farthest, u"default"_s};
        QTest::newRow("an action without a name") << invoked << QVariantList{1U, QString()};
        QTest::newRow("an action in capitals") << invoked << QVariantList{1U, u"DEFAULT"_s};
        QTest::newRow("an action with a line break") << invoked << QVariantList{1U, u"lock\n"_s};
        QTest::newRow("an action of a million characters") << invoked << QVariantList{1U, QString(1'000'000, u'd')};
        QTest::newRow("a click without an action") << invoked << QVariantList{1U};
        QTest::newRow("a click without anything") << invoked << QVariantList{};
        QTest::newRow("a click with a signed number") << invoked << QVariantList{1, u"default"_s};
        QTest::newRow("a click with a text as its number") << invoked << QVariantList{u"1"_s, u"default"_s};
        QTest::newRow("a click the wrong way round") << invoked << QVariantList{u"default"_s, 1U};
        QTest::newRow("the end of number 0") << closed << QVariantList{0U, 1U};
        QTest::newRow("the end of a number never given") << closed << QVariantList{2U, 1U};
        QTest::newRow("the end of the farthest number") << closed << QVariantList{farthest, farthest};
        QTest::newRow("an end without a reason") << closed << QVariantList{1U};
        QTest::newRow("an end with a text as its number") << closed << QVariantList{u"1"_s, 1U};
    }

    void aSignalThatMakesNoSenseIsNoClickAndNoDismissal()
    {
        QFETCH(const QString, member);
        QFETCH(const QVariantList, arguments);
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server->signal(member, arguments);
        settle(centre);
        QCOMPARE(spy.size(), 0);

        // The notification is still known.
        m_server->invoke(1, u"lock"_s);
        QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, patience);
    }

    void aDismissalForWhateverReasonForgetsTheNumber_data()
    {
        QTest::addColumn<uint>("reason");

        QTest::newRow("expired") << 1U;
        QTest::newRow("closed by a call") << 3U;
        QTest::newRow("a reason that is not defined") << 4U;
        QTest::newRow("a reason that is not known yet") << 0U;
        QTest::newRow("the farthest reason") << std::numeric_limits<uint>::max();
    }

    void aDismissalForWhateverReasonForgetsTheNumber()
    {
        QFETCH(const uint, reason);
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server->close(1, reason);
        m_server->close(1, reason);
        m_server->invoke(1, u"default"_s);
        settle(centre);

        QCOMPARE(spy.size(), 0);
    }

    void anAnswerThatIsNoNumberIsNone_data()
    {
        QTest::addColumn<QVariantList>("answer");

        QTest::newRow("a list") << QVariantList{QStringList{u"1"_s, u"2"_s}};
        QTest::newRow("a dictionary") << QVariantList{QVariantMap{{u"id"_s, 1}}};
        QTest::newRow("many bytes") << QVariantList{QByteArray(1'000'000, 'x')};
        QTest::newRow("nothing") << QVariantList{};
        QTest::newRow("the number 0") << QVariantList{0U};
        QTest::newRow("a text") << QVariantList{u"one"_s};
        QTest::newRow("a negative number") << QVariantList{-1};
        QTest::newRow("a number as text") << QVariantList{u"1"_s};
    }

    void anAnswerThatIsNoNumberIsNone()
    {
        QFETCH(const QVariantList, answer);
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        m_server->holdsBack = true;
        show(centre, u"a"_s);

        m_server->answerAllWith(answer);
        m_server->invoke(0, u"default"_s);
        m_server->invoke(1, u"default"_s);
        m_server->invoke(std::numeric_limits<uint>::max(), u"default"_s);
        settle(centre);
        QCOMPARE(spy.size(), 0);

        centre.add(request(u"a"_s, u"again"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.constLast().body, u"again"_s, patience);
        QCOMPARE(m_server->shown.constLast().replaces, 0U);
    }

    void aNumberGivenTwiceIsAClickOnOneNotificationAlone()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);
        m_server->nextId = 1;
        show(centre, u"b"_s);

        m_server->invoke(1, u"default"_s);
        settle(centre);

        QCOMPARE(spy.size(), 1);
    }

    void aNewServerKnowsNoneOfTheNumbers()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server.reset();
        m_server = std::make_unique<PlayedServer>(m_bus.address());
        m_server->invoke(1, u"default"_s);
        show(centre, u"other"_s);
        settle(centre);
        QCOMPARE(spy.size(), 0);

        centre.add(request(u"a"_s, u"again"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.constLast().body, u"again"_s, patience);
        QCOMPARE(m_server->shown.constLast().replaces, 0U);
        m_server->invoke(m_server->nextId - 1, u"default"_s);
        QTRY_COMPARE_WITH_TIMEOUT(spy.size(), 1, patience);
    }

    void aServerThatDiesWithoutAnAnswerDoesNotBlockTheIdentifier()
    {
        m_server->holdsBack = true;
        FreedesktopNotificationCentre centre(exampleProgram());
        centre.add(request(u"a"_s, u"one"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);
        centre.add(request(u"a"_s, u"two"_s));

        m_server.reset();
        m_server = std::make_unique<PlayedServer>(m_bus.address());
        centre.add(request(u"a"_s, u"three"_s));

        QTRY_VERIFY_WITH_TIMEOUT(!m_server->shown.isEmpty() && m_server->shown.constLast().body == u"three"_s,
                                 patience);
    }

    void withoutAServerRequestsAreDroppedInSilence()
    {
        m_server.reset();
        const LogCapture log;
        FreedesktopNotificationCentre centre(exampleProgram());

        centre.requestAuthorization();
        centre.add(request(u"a"_s));
        letTheBusAnswer();
        m_server = std::make_unique<PlayedServer>(m_bus.address());
        show(centre, u"b"_s);

        QCOMPARE(m_server->shown.size(), 1);
        QCOMPARE(log.lines(), QStringList());
    }

    void withoutAServerNothingPilesUp()
    {
        if (!ProcessFigures::memoryTells) {
            QSKIP("the sanitizer keeps what is freed");
        }
        m_server.reset();
        FreedesktopNotificationCentre centre(exampleProgram());
        centre.add(request(u"first"_s));
        letTheBusAnswer();
        constexpr int count = 10'000;
        constexpr qint64 little = 1'000'000;
        const qint64 before = ProcessFigures::now().allocatedBytes;

        for (int number = 0; number < count; ++number) {
            centre.add(request(QString::number(number)));
        }
        const qint64 waiting = ProcessFigures::now().allocatedBytes - before;
        letTheBusAnswer();
        const qint64 afterwards = ProcessFigures::now().allocatedBytes - before;

        QVERIFY2(waiting < little, qPrintable(QString::number(waiting)));
        QVERIFY2(afterwards < little / 10, qPrintable(QString::number(afterwards)));
    }

    void aServerThatDoesNotAnswerGetsAHundredCallsAndTheLatestAfterThem()
    {
        m_server->holdsBack = true;
        FreedesktopNotificationCentre centre(exampleProgram());
        constexpr int count = 1000;
        for (int number = 0; number < 100; ++number) {
            centre.add(request(QString::number(number)));
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 100, patience);

        for (int number = 100; number < count; ++number) {
            centre.add(request(QString::number(number), QString::number(number)));
        }
        letTheBusAnswer();
        QCOMPARE(m_server->shown.size(), 100);
        m_server->answerAll();

        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 200, patience);
        QCOMPARE(m_server->shown[100].body, u"900"_s);
        QCOMPARE(m_server->shown[199].body, u"999"_s);
    }

    void aServerThatNeverAnswersHoldsNobodyUp()
    {
        m_server->holdsBack = true;
        constexpr int count = 100;
        // A call that waits does so for 25 seconds; a busy machine may be late by much of one.
        constexpr qint64 limit = 5000;
        QElapsedTimer timer;
        timer.start();

        FreedesktopNotificationCentre centre(exampleProgram());
        centre.requestAuthorization();
        for (int i = 0; i < count; ++i) {
            centre.add(request(QString::number(i)));
        }

        QVERIFY2(timer.elapsed() < limit, qPrintable(QString::number(timer.elapsed())));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), count, patience);
    }

    void authorizationIsAskedForOnce()
    {
        FreedesktopNotificationCentre centre(exampleProgram());

        centre.requestAuthorization();
        show(centre, u"a"_s);

        QCOMPARE(m_server->capabilityQuestions, 1);
    }

private:
    void show(FreedesktopNotificationCentre& centre, const QString& identifier)
    {
        const qsizetype before = m_server->shown.size();
        centre.add(request(identifier));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), before + 1, patience);
    }

    /// Returns when all questions that were on their way, and those that followed from their answers, are answered by
    /// the bus itself: its answers come in the order of the questions.
    static void letTheBusAnswer()
    {
        constexpr int rounds = 4;
        for (int round = 0; round < rounds; ++round) {
            QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
                u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s));
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    /// Returns when everything that the server has sent so far has arrived: its messages come in order.
    void settle(FreedesktopNotificationCentre& centre)
    {
        const qsizetype before = m_server->shown.size();
        const uint id = m_server->nextId;
        centre.add(request(u"settle"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), before + 1, patience);
        // The reply has arrived as soon as a second request replaces the first.
        centre.add(request(u"settle"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), before + 2, patience);
        QCOMPARE(m_server->shown.constLast().replaces, id);
    }

    SessionBus m_bus;
    std::unique_ptr<PlayedServer> m_server;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FreedesktopNotificationCentreTest)
#include "FreedesktopNotificationCentre_test.moc"
