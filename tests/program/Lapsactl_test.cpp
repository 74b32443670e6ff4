// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FinishedProgram.h"
#include "ServedLapsa.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>

#include <sys/types.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

enum Status
{
    Done = 0,
    NotAllDone = 1,
    WrongUsage = 2,
    NotRunning = 3,
};

} // namespace

/// The real lapsactl beside the real Lapsa.
class LapsactlTest final : public ServedLapsa
{
    Q_OBJECT

private slots:

    void init() { beginServed(); }

    void cleanup()
    {
        qunsetenv("LC_MESSAGES");
        qputenv("LC_ALL", "C.UTF-8");
        endServed();
    }

    void addTakesPathsAndALifespan()
    {
        startLapsa();
        const QString plain = m_home->makeFile(u"a b.txt"_s);
        const QString other = m_home->makeFile(u"-odd #1.txt"_s);

        const FinishedProgram added = run({u"add"_s, u"--for"_s, u"1d12h"_s, u"a b.txt"_s, u"--"_s, u"-odd #1.txt"_s});

        QCOMPARE(added.errors, QByteArray());
        QCOMPARE(added.code, int(Done));
        QCOMPARE(paths(), QStringList({plain, other}));
        const QVariantMap item = answer(u"Items"_s).value(0);
        constexpr qint64 minutes = 36 * 60;
        QCOMPARE((item[u"expires"_s].toLongLong() - item[u"added"_s].toLongLong()) / 60, minutes);
        QCOMPARE(added.output.count('\n'), 2);
        QVERIFY2(added.output.contains("a b.txt\n"), added.output.constData());
    }

    void whatIsNotAddedIsToldAndTheRestIsAdded()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"a.txt"_s);

        const FinishedProgram added = run({u"add"_s, u"gone\n\x1b[31m.txt"_s, u"a.txt"_s, u"/"_s});

        QCOMPARE(added.code, int(NotAllDone));
        QCOMPARE(paths(), QStringList{file});
        QCOMPARE(added.errors.count('\n'), 2);
        QVERIFY2(added.errors.contains("gone\\n\\x1b[31m.txt: there is no such file\n"), added.errors.constData());
        QVERIFY2(added.errors.contains("lapsactl: /: Lapsa never takes this (root)\n"), added.errors.constData());
    }

    void listShowsTheTimeTheLockAndThePath()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"a.txt"_s);
        const QString other = m_home->makeFile(u"b.txt"_s);
        QCOMPARE(run({u"add"_s, u"--for"_s, u"90min"_s, u"a.txt"_s, u"b.txt"_s}).code, int(Done));
        QCOMPARE(run({u"lock"_s, u"b.txt"_s}).code, int(Done));

        const FinishedProgram listed = run({u"list"_s});

        QCOMPARE(listed.code, int(Done));
        QCOMPARE(listed.output,
                 QByteArray("1h 30min          " + file.toUtf8() + "\n1h 30min  locked  " + other.toUtf8() + "\n"));
    }

    void jsonIsAnArrayOfObjects()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"a \"b\".txt"_s);
        QCOMPARE(run({u"add"_s, u"a \"b\".txt"_s}).code, int(Done));

        const FinishedProgram listed = run({u"--json"_s, u"list"_s});

        const QJsonArray items = QJsonDocument::fromJson(listed.output).array();
        QCOMPARE(items.size(), 1);
        QCOMPARE(items[0][u"path"_s].toString(), file);
        QVERIFY(items[0][u"expires"_s].toInteger() > items[0][u"added"_s].toInteger());
        QCOMPARE(items[0][u"locked"_s], QJsonValue(false));
        QCOMPARE(run({u"recovered"_s, u"--json"_s}).output.simplified(), QByteArray("[ ]"));
    }

    void lockUnlockAndRemoveTakePathsNamesAndIds()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"folder/a.txt"_s);
        QCOMPARE(run({u"add"_s, u"folder/a.txt"_s}).code, int(Done));
        const auto locked = [this] { return answer(u"Items"_s).value(0)[u"locked"_s].toBool(); };

        QCOMPARE(run({u"lock"_s, u"a.txt"_s}).code, int(Done));
        QVERIFY(locked());
        QCOMPARE(run({u"unlock"_s, u"folder/../folder/a.txt"_s}).code, int(Done));
        QVERIFY(!locked());
        QCOMPARE(run({u"remove"_s, answer(u"Items"_s).value(0)[u"id"_s].toString()}).code, int(Done));
        QCOMPARE(paths(), QStringList());
        QVERIFY(QFile::exists(file));
    }

    void aNameThatSeveralHaveIsNotGuessed()
    {
        startLapsa();
        m_home->makeFile(u"one/a.txt"_s);
        m_home->makeFile(u"two/a.txt"_s);
        QCOMPARE(run({u"add"_s, u"one/a.txt"_s, u"two/a.txt"_s}).code, int(Done));

        const FinishedProgram removed = run({u"remove"_s, u"a.txt"_s});

        QCOMPARE(removed.code, int(NotAllDone));
        QCOMPARE(paths().size(), 2);
        for (const QVariantMap& item : answer(u"Items"_s)) {
            QVERIFY(removed.errors.contains(item[u"id"_s].toByteArray()));
        }
    }

    void putBackPrintsWhereTheFileIs()
    {
        const QString file = m_home->makeFile(u"Downloads/report.zip"_s, "the report");
        listExpired(file);
        startLapsa();
        QTRY_COMPARE_WITH_TIMEOUT(answer(u"Recovered"_s).size(), 1, patience);
        QVERIFY(run({u"recovered"_s}).output.endsWith("  " + file.toUtf8() + '\n'));

        const FinishedProgram back = run({u"put-back"_s, u"report.zip"_s});

        QCOMPARE(back.errors, QByteArray());
        QCOMPARE(back.code, int(Done));
        QCOMPARE(back.output, file.toUtf8() + '\n');
        QVERIFY(QFile::exists(file));
        const FinishedProgram again = run({u"put-back"_s, u"report.zip"_s});
        QCOMPARE(again.code, int(NotAllDone));
        QCOMPARE(again.errors, QByteArray("lapsactl: report.zip: there is nothing of this name\n"));
    }

    void withoutLapsaItSaysSo_data()
    {
        QTest::addColumn<QStringList>("arguments");

        QTest::newRow("list") << QStringList{u"list"_s};
        QTest::newRow("recovered") << QStringList{u"recovered"_s};
        QTest::newRow("lock") << QStringList{u"lock"_s, u"a"_s};
        QTest::newRow("add, where it is not installed") << QStringList{u"add"_s, u"a"_s};
    }

    void withoutLapsaItSaysSo()
    {
        QFETCH(const QStringList, arguments);

        const FinishedProgram asked = run(arguments);

        QCOMPARE(asked.code, int(NotRunning));
        QCOMPARE(asked.output, QByteArray());
        QVERIFY2(asked.errors.startsWith("lapsactl: Lapsa is not running"), asked.errors.constData());
        QCOMPARE(asked.errors.count('\n'), 1);
    }

    void withoutABusItSaysSo()
    {
        const NoSessionBus none;

        const FinishedProgram asked = run({u"list"_s});

        QCOMPARE(asked.code, int(NotRunning));
        QCOMPARE(asked.errors, QByteArray("lapsactl: There is no session bus\n"));
    }

    void addStartsAnInstalledLapsa()
    {
        const QString services = m_home->makeFolder(u"services"_s);
        m_home->makeFile(u"services/org.lapsa.Lapsa.service"_s,
                         "[D-BUS Service]\nName=org.lapsa.Lapsa\nExec=" + LapsaProcess::program().toUtf8() + "\n");
        const QString file = m_home->makeFile(u"a.txt"_s);
        m_bus.emplace(services);

        const FinishedProgram listed = run({u"list"_s});
        const FinishedProgram added = run({u"add"_s, u"a.txt"_s});
        auto bus = QDBusConnection::connectToBus(m_bus->address(), u"starter"_s);
        const QDBusReply<uint> process = bus.interface()->servicePid(busName());
        QDBusConnection::disconnectFromBus(u"starter"_s);

        QVERIFY(process.isValid());
        ::kill(pid_t(process.value()), SIGTERM);
        QCOMPARE(listed.code, int(NotRunning));
        QCOMPARE(added.errors, QByteArray());
        QCOMPARE(added.code, int(Done));
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
    }

    void wrongUsageIsStatus2_data()
    {
        QTest::addColumn<QStringList>("arguments");

        QTest::newRow("nothing") << QStringList();
        QTest::newRow("an unknown command") << QStringList{u"delete"_s, u"a"_s};
        QTest::newRow("an unknown option") << QStringList{u"list"_s, u"--force"_s};
        QTest::newRow("add without a file") << QStringList{u"add"_s};
        QTest::newRow("lock without a name") << QStringList{u"lock"_s};
        QTest::newRow("list with a name") << QStringList{u"list"_s, u"a"_s};
        QTest::newRow("a lifespan without a unit") << QStringList{u"add"_s, u"--for"_s, u"90"_s, u"a"_s};
        QTest::newRow("an empty lifespan") << QStringList{u"add"_s, u"--for"_s, QString(), u"a"_s};
        QTest::newRow("no time at all") << QStringList{u"add"_s, u"--for"_s, u"0h"_s, u"a"_s};
        QTest::newRow("more than a year") << QStringList{u"add"_s, u"--for"_s, u"366d"_s, u"a"_s};
        QTest::newRow("a negative lifespan") << QStringList{u"add"_s, u"--for"_s, u"-2h"_s, u"a"_s};
        QTest::newRow("a lifespan for list") << QStringList{u"list"_s, u"--for"_s, u"2h"_s};
        QTest::newRow("a lifespan that is missing") << QStringList{u"add"_s, u"--for"_s};
    }

    void wrongUsageIsStatus2()
    {
        QFETCH(const QStringList, arguments);

        const FinishedProgram asked = run(arguments);

        QCOMPARE(asked.code, int(WrongUsage));
        QCOMPARE(asked.output, QByteArray());
        QVERIFY2(asked.errors.contains("--help"), asked.errors.constData());
    }

    void helpAndVersionNeedNoLapsa()
    {
        const FinishedProgram help = run({u"--help"_s});
        const FinishedProgram version = run({u"--version"_s});

        QCOMPARE(help.code, int(Done));
        QVERIFY(help.output.startsWith("Usage: lapsactl"));
        QCOMPARE(version.code, int(Done));
        QCOMPARE(version.output, QByteArray("lapsactl " LAPSA_VERSION "\n"));
    }

    void itSpeaksItalian()
    {
        qputenv("LC_ALL", "it_IT.UTF-8");

        QCOMPARE(run({u"list"_s}).errors, QByteArray("lapsactl: Lapsa non è in esecuzione\n"));
        QVERIFY(run({u"--help"_s}).output.startsWith("Uso: lapsactl"));
    }

private:
    [[nodiscard]] FinishedProgram run(const QStringList& arguments) const
    {
        return finished(QStringLiteral(LAPSACTL_PROGRAM), arguments, m_home->path({}));
    }

    [[nodiscard]] QStringList paths() const
    {
        QStringList paths;
        for (const QVariantMap& item : answer(u"Items"_s)) {
            paths.push_back(item[u"path"_s].toString());
        }
        return paths;
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsactlTest)
#include "Lapsactl_test.moc"
