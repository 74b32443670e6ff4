// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaAppFixture.h"
#include "LapsaProcess.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;

namespace lapsa::test {

/// The program as a whole, from outside: its end.
class LapsaAppEndTest final : public LapsaAppFixture
{
    Q_OBJECT

private slots:

    void init() { begin(); }

    void cleanup() { end(); }

    void aSignalSavesWhatIsPendingAndEndsWith0_data()
    {
        QTest::addColumn<int>("signal");

        QTest::newRow("SIGTERM") << SIGTERM;
        QTest::newRow("SIGINT") << SIGINT;
        QTest::newRow("SIGHUP") << SIGHUP;
    }

    void aSignalSavesWhatIsPendingAndEndsWith0()
    {
        QFETCH(const int, signal);
        const QString file = m_home->makeFile(u"late.txt"_s);
        LapsaProcess lapsa;
        waitForName();
        LapsaProcess second({file});
        QCOMPARE(second.exitCode(), 0);

        lapsa.send(signal);

        QCOMPARE(lapsa.exitCode(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void aSignalSavesSettingsThatWaitForIt()
    {
        makeSettings();
        QJsonObject settings = QJsonDocument::fromJson(m_home->dataFile(u"settings.json"_s)).object();
        settings[u"notifyBeforeMinutes"_s] = 999;
        m_home->writeDataFile(u"settings.json"_s, QJsonDocument(settings).toJson());

        LapsaProcess lapsa;
        waitForName();
        QCOMPARE(lapsa.terminate(), 0);

        settings = QJsonDocument::fromJson(m_home->dataFile(u"settings.json"_s)).object();
        QCOMPARE(settings[u"notifyBeforeMinutes"_s].toInt(), 60);
    }

    void anEndThatIsAskedForInTheMiddleOfTheStartIsHeard()
    {
        // The moment is not the same each time.
        constexpr int starts = 20;
        for (int start = 0; start < starts; ++start) {
            LapsaProcess lapsa;
            waitForName();
            QCOMPARE(lapsa.terminate(), 0);
        }
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppEndTest)
#include "LapsaApp_end_test.moc"
