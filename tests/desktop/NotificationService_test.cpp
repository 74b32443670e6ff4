// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaItem.h"
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
    }

    void whatGoesTogetherIsOneWarning_data()
    {
        QTest::addColumn<int>("files");
        QTest::addColumn<qint64>("minutes");
        QTest::addColumn<QString>("english");
        QTest::addColumn<QString>("italian");

        QTest::newRow("many") << 290 << qint64{5} << u"290 more files will self-destruct in 5 minutes."_s
                              << u"Altri 290 file verranno eliminati tra 5 minuti."_s;
        QTest::newRow("thousands") << 1290 << qint64{60} << u"1,290 more files will self-destruct in 60 minutes."_s
                                   << u"Altri 1.290 file verranno eliminati tra 60 minuti."_s;
        QTest::newRow("one") << 1 << qint64{1} << u"1 more file will self-destruct in 1 minute."_s
                             << u"Un altro file verrà eliminato tra 1 minuto."_s;
    }

    void whatGoesTogetherIsOneWarning()
    {
        QFETCH(const int, files);
        QFETCH(const qint64, minutes);
        const QList<LapsaItem> items(files, itemNamed(u"a"_s));

        m_service.sendJointWarning(items, minutes);
        const NotificationRequest english = m_centre.requests.takeLast();
        qputenv("LC_ALL", "it_IT.UTF-8");
        m_service.sendJointWarning(items, minutes);
        const NotificationRequest italian = m_centre.requests.takeLast();

        QTEST(english.body, "english");
        QCOMPARE(english.title, u"Lapsa alert"_s);
        QCOMPARE(english.actionLabel, u"Lock all"_s);
        QTEST(italian.body, "italian");
        QCOMPARE(italian.title, u"Avviso Lapsa"_s);
        QCOMPARE(italian.actionLabel, u"Blocca tutti"_s);
        QCOMPARE(m_centre.requests.size(), 0);
    }

    void aJointWarningHandsAllItsItemsBackAndReplacesNoOther()
    {
        LapsaItem odd = itemNamed(u"odd"_s);
        odd.id = u"a \"b\", [c]\n"_s;
        const LapsaItem even = itemNamed(u"even"_s);

        m_service.sendWarning(odd, 5);
        m_service.sendJointWarning({odd, even}, 5);
        m_service.sendJointWarning({even, odd}, 5);

        QCOMPARE(NotificationService::itemsOf(m_centre.requests[0].userInfo), QStringList{odd.id});
        QCOMPARE(NotificationService::itemsOf(m_centre.requests[1].userInfo), QStringList({odd.id, even.id}));
        QCOMPARE(m_centre.requests[1].identifier, u"lapsa-warnings-"_s + odd.id);
        QCOMPARE(m_centre.requests[2].identifier, u"lapsa-warnings-5E0C"_s);
        QCOMPARE(NotificationService::itemsOf({}), QStringList());
        m_centre.requests.clear();
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
