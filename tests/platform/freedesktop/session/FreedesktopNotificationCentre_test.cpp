// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "FreedesktopNotificationCentre.h"
#include "NotificationCentreFixture.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class FreedesktopNotificationCentreTest final : public NotificationCentreFixture
{
    Q_OBJECT

private slots:

    void init() { m_server = std::make_unique<PlayedNotificationServer>(m_bus.address()); }

    void cleanup() { m_server.reset(); }

    void aRequestIsShownWithOneButtonAndTheDefaultSound()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        centre.add(request(u"a"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);

        const PlayedNotificationServer::Notification& shown = m_server->shown.constFirst();

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
        m_server = std::make_unique<PlayedNotificationServer>(m_bus.address());
        letTheBusAnswer();
        centre.add(request(u"b"_s, u"R&D"_s));
        QTRY_COMPARE_WITH_TIMEOUT(m_server->shown.size(), 1, patience);
        QCOMPARE(m_server->shown[0].body, u"R&amp;D"_s);

        m_server.reset();
        m_server = std::make_unique<PlayedNotificationServer>(m_bus.address());
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

    void authorizationIsAskedForOnce()
    {
        FreedesktopNotificationCentre centre(exampleProgram());

        centre.requestAuthorization();
        show(centre, u"a"_s);

        QCOMPARE(m_server->capabilityQuestions, 1);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FreedesktopNotificationCentreTest)
#include "FreedesktopNotificationCentre_test.moc"
