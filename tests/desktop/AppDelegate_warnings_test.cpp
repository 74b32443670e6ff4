// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "DelegateWorld.h"
#include "PanelWorld.h"
#include "PopoverWindow.h"

#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace lapsa::test {

namespace {

using UserInfo = QHash<QString, QString>;

} // namespace

class AppDelegateWarningsTest final : public QObject
{
    Q_OBJECT

private slots:

    static void initTestCase() { PanelWorld::setUpApplication(); }

    void init() { qputenv("LC_ALL", "en_GB.UTF-8"); }

    void aClickOnAWarningLocksItsItemAndOpensThePanel()
    {
        DelegateWorld program;
        program.start();
        program.delegate->applicationOpen({QUrl::fromLocalFile(program.home.makeFile(u"a.txt"_s))});
        program.time.advance(300ms);
        const QString id = program.storedItems()[0][u"id"_s].toString();

        emit program.notificationCentre.responseReceived({{u"itemId"_s, id}});

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        program.time.advance(300ms);
        QVERIFY(program.storedItems()[0][u"locked"_s].toBool());
    }

    void lockAllLocksWhatTheWarningWasAboutAndOpensThePanel()
    {
        DelegateWorld program;
        QList<QUrl> urls;
        for (int number = 0; number < 13; ++number) {
            urls.push_back(QUrl::fromLocalFile(program.home.makeFile(QString::number(number))));
        }
        program.start();
        program.delegate->applicationOpen(urls);
        program.time.advance(2h - 4min);
        QCOMPARE(program.notificationCentre.requests.size(), 11);

        emit program.notificationCentre.responseReceived(program.notificationCentre.requests.last().userInfo);

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
        program.time.advance(300ms);
        const QJsonArray items = program.storedItems();
        for (int number = 0; number < 13; ++number) {
            QCOMPARE(items[number][u"locked"_s].toBool(), number >= 10);
        }
    }

    void aClickOnAWarningWhoseItemIsGoneOpensThePanel_data()
    {
        QTest::addColumn<UserInfo>("userInfo");
        QTest::newRow("an item that was removed") << UserInfo{{u"itemId"_s, u"gone"_s}};
        QTest::newRow("no item") << UserInfo();
    }

    void aClickOnAWarningWhoseItemIsGoneOpensThePanel()
    {
        QFETCH(const UserInfo, userInfo);
        DelegateWorld program;
        program.start();

        emit program.notificationCentre.responseReceived(userInfo);

        QVERIFY(DelegateWorld::shows<PopoverWindow>());
    }
};

} // namespace lapsa::test

QTEST_MAIN(lapsa::test::AppDelegateWarningsTest)
#include "AppDelegate_warnings_test.moc"
