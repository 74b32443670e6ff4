// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "ExampleProgram.h"
#include "FreedesktopNotificationCentre.h"
#include "LogCapture.h"
#include "NotificationCentreFixture.h"
#include "ProcessFigures.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class FreedesktopNotificationCentreServersTest final : public NotificationCentreFixture
{
    Q_OBJECT

private slots:

    void init() { m_server = std::make_unique<PlayedNotificationServer>(m_bus.address()); }

    void cleanup() { m_server.reset(); }

    void aNewServerKnowsNoneOfTheNumbers()
    {
        FreedesktopNotificationCentre centre(exampleProgram());
        const QSignalSpy spy(&centre, &NotificationCentre::responseReceived);
        show(centre, u"a"_s);

        m_server.reset();
        m_server = std::make_unique<PlayedNotificationServer>(m_bus.address());
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
        m_server = std::make_unique<PlayedNotificationServer>(m_bus.address());
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
        m_server = std::make_unique<PlayedNotificationServer>(m_bus.address());
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
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FreedesktopNotificationCentreServersTest)
#include "FreedesktopNotificationCentre_servers_test.moc"
