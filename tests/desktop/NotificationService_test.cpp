// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaItem.h"
#include "Localized.h"
#include "NotificationService.h"
#include "RecordingDesktop.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

LapsaItem itemNamed(const QString& displayName)
{
    LapsaItem item;
    item.id = u"5E0C"_s;
    item.displayName = displayName;
    return item;
}

} // namespace

class NotificationServiceTest final : public QObject
{
    Q_OBJECT

private slots:

    void init() { qputenv("LC_ALL", "en_GB.UTF-8"); }

    void aWarningStatesTheNameAndTheMinutes()
    {
        m_service.sendWarning(itemNamed(u"report.zip"_s), 5);

        const NotificationRequest request = m_centre.requests.takeLast();
        QCOMPARE(request.title, u"Lapsa alert"_s);
        QCOMPARE(request.body, u"report.zip will self-destruct in 5 minutes."_s);
        QCOMPARE(request.actionLabel, u"Lock"_s);
        QCOMPARE(request.identifier, u"lapsa-warning-5E0C"_s);
        QCOMPARE(request.userInfo, (QHash<QString, QString>{{u"itemId"_s, u"5E0C"_s}}));
    }

    void inItalianTheTextsAreItalianAndTheKeysStay()
    {
        qputenv("LC_ALL", "it_CH.UTF-8");

        m_service.sendWarning(itemNamed(u"report.zip"_s), 5);

        const NotificationRequest request = m_centre.requests.takeLast();
        QCOMPARE(request.title, u"Avviso Lapsa"_s);
        QCOMPARE(request.body, u"report.zip verr\u00E0 eliminato tra 5 minuti."_s);
        QCOMPARE(request.actionLabel, u"Blocca"_s);
        QCOMPARE(request.identifier, u"lapsa-warning-5E0C"_s);
        QCOMPARE(request.userInfo, (QHash<QString, QString>{{u"itemId"_s, u"5E0C"_s}}));
        QCOMPARE(request.title, Localized::notificationTitle());
    }

    void aNameIsInsertedAsItIs_data()
    {
        QTest::addColumn<QString>("name");

        QTest::newRow("a number mark") << u"%d%d"_s;
        QTest::newRow("a name mark") << u"%@"_s;
        QTest::newRow("percent signs") << u"100%% %s %1 %n"_s;
        QTest::newRow("half a mark at the end") << u"a%"_s;
        QTest::newRow("empty") << u""_s;
    }

    void aNameIsInsertedAsItIs()
    {
        QFETCH(const QString, name);

        m_service.sendWarning(itemNamed(name), 60);

        QCOMPARE(m_centre.requests.takeLast().body, name + u" will self-destruct in 60 minutes."_s);
    }

    void oneMinuteStillReadsMinutes()
    {
        m_service.sendWarning(itemNamed(u"a"_s), 1);

        QCOMPARE(m_centre.requests.takeLast().body, u"a will self-destruct in 1 minutes."_s);
    }

    void twoWarningsForTheSameItemCarryTheSameIdentifier()
    {
        m_service.sendWarning(itemNamed(u"a"_s), 5);
        m_service.sendWarning(itemNamed(u"b"_s), 4);

        QCOMPARE(m_centre.requests.takeLast().identifier, m_centre.requests.takeLast().identifier);
    }

    void authorizationIsPassedOn()
    {
        m_service.requestAuthorization();

        QCOMPARE(m_centre.authorizationRequests, 1);
    }

private:
    RecordingNotificationCentre m_centre;
    NotificationService m_service{m_centre};
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::NotificationServiceTest)
#include "NotificationService_test.moc"
