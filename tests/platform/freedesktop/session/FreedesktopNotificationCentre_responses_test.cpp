// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "FreedesktopNotificationCentre.h"
#include "NotificationCentreFixture.h"

#include <QHash>
#include <QSignalSpy>
#include <QTest>
#include <QVariantMap>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using UserInfo = QHash<QString, QString>;

} // namespace

class FreedesktopNotificationCentreResponsesTest final : public NotificationCentreFixture
{
    Q_OBJECT

private slots:

    void init() { m_server = std::make_unique<PlayedNotificationServer>(m_bus.address()); }

    void cleanup() { m_server.reset(); }

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
        PlayedNotificationServer forger(m_bus.address(), false);

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
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FreedesktopNotificationCentreResponsesTest)
#include "FreedesktopNotificationCentre_responses_test.moc"
