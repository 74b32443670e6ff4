// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FinishedProgram.h"
#include "ServedLapsa.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QSignalSpy>
#include <QUrl>

#include <sys/types.h>

#include <csignal>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

QString uriOf(const QString& path)
{
    return QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
}

/// Counts a signal.
class Listener final : public QObject
{
    Q_OBJECT

public:
    int heard = 0;

public slots:

    void hear() { ++heard; }
};

} // namespace

/// The interface of the real program, as other programs see it.
class Lapsa1Test final : public ServedLapsa
{
    Q_OBJECT

private slots:

    void init() { beginServed(); }

    void cleanup() { endServed(); }

    void gdbusAddsAFileAndSeesItOnTheList()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"100% #1.txt"_s);
        const QStringList toLapsa{u"call"_s,          u"--session"_s, u"--dest"_s,  busName(),
                                  u"--object-path"_s, objectPath(),   u"--method"_s};

        const FinishedProgram added = finished(
            u"gdbus"_s, toLapsa + QStringList{u"org.lapsa.Lapsa1.Add"_s, u"['%1']"_s.arg(uriOf(file)), u"90"_s});
        const FinishedProgram listed = finished(u"gdbus"_s, toLapsa + QStringList{u"org.lapsa.Lapsa1.Items"_s});

        QCOMPARE(added.code, 0);
        QVERIFY2(added.output.contains("'outcome': <'added'>"), added.output.constData());
        QVERIFY2(listed.output.contains("'path': <'" + file.toUtf8() + "'>"), listed.output.constData());
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
    }

    void busctlLocksAnItem()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"a.txt"_s);
        const QString id = answer(u"Add"_s, {QStringList{uriOf(file)}, 0}).value(0)[u"id"_s].toString();

        const FinishedProgram locked = finished(u"busctl"_s, {u"--user"_s, u"call"_s, busName(), objectPath(),
                                                              interfaceName(), u"Lock"_s, u"sb"_s, id, u"true"_s});

        QVERIFY2(locked.code == 0, locked.errors.constData());
        QCOMPARE(answer(u"Items"_s).value(0)[u"locked"_s].toBool(), true);
    }

    void whatCallersAreToldIsWhatIsInstalled()
    {
        startLapsa();
        QFile file(QStringLiteral(LAPSA_SOURCE_FOLDER "/scripting/org.lapsa.Lapsa1.xml"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString installed = QString::fromUtf8(file.readAll());
        const QString interface =
            installed.sliced(installed.indexOf(u"  <interface"_s),
                             installed.indexOf(u"</node>"_s) - installed.indexOf(u"  <interface"_s));

        const QDBusMessage reply = m_client->call(QDBusMessage::createMethodCall(
            busName(), objectPath(), u"org.freedesktop.DBus.Introspectable"_s, u"Introspect"_s));

        const QString told = reply.arguments().value(0).toString();
        QVERIFY2(told.contains(interface), qUtf8Printable(told));
        QVERIFY(told.contains(u"org.freedesktop.Application"_s));
    }

    void eachUriHasItsOutcomeInOrder()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"a.txt"_s);

        const Dictionaries outcomes = answer(
            u"Add"_s,
            {QStringList{u"file:///"_s, uriOf(m_home->path(u"gone"_s)), uriOf(file), uriOf(m_home->path({}))}, 0});

        QCOMPARE(outcomes.size(), 4);
        QCOMPARE(outcomes[0][u"outcome"_s].toString(), u"refused"_s);
        QCOMPARE(outcomes[0][u"reason"_s].toString(), u"root"_s);
        QCOMPARE(outcomes[1][u"outcome"_s].toString(), u"missing"_s);
        QCOMPARE(outcomes[2][u"outcome"_s].toString(), u"added"_s);
        QCOMPARE(outcomes[3][u"reason"_s].toString(), u"home"_s);
        QCOMPARE(answer(u"Items"_s).size(), 1);
    }

    void minutesAreTheLifespanAndZeroLeavesItToTheRules()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"report.zip"_s);
        const auto lifespan = [this] {
            const QVariantMap item = answer(u"Items"_s).value(0);
            return item[u"expires"_s].toLongLong() - item[u"added"_s].toLongLong();
        };
        constexpr qint64 week = 7 * 24 * 60 * 60;

        QCOMPARE(answer(u"Add"_s, {QStringList{uriOf(file)}, 0}).size(), 1);
        QVERIFY(lifespan() >= week && lifespan() < week + 60);

        QCOMPARE(answer(u"Add"_s, {QStringList{uriOf(file)}, 1}).size(), 1);
        QVERIFY(lifespan() < 2 * 60);
    }

    void removeLeavesTheFile()
    {
        startLapsa();
        const QString file = m_home->makeFile(u"a.txt"_s);
        const QString id = answer(u"Add"_s, {QStringList{uriOf(file)}, 0}).value(0)[u"id"_s].toString();

        QCOMPARE(call(u"Remove"_s, {id}).type(), QDBusMessage::ReplyMessage);

        QCOMPARE(answer(u"Items"_s), Dictionaries());
        QVERIFY(QFile::exists(file));
    }

    void whatExpiredIsPutBackByItsId()
    {
        const QString file = m_home->makeFile(u"Downloads/report.zip"_s, "the report");
        listExpired(file);
        startLapsa();
        QTRY_COMPARE_WITH_TIMEOUT(answer(u"Recovered"_s).size(), 1, patience);
        const QVariantMap record = answer(u"Recovered"_s).value(0);
        QCOMPARE(record[u"originalPath"_s].toString(), file);
        QVERIFY(QFile::exists(record[u"path"_s].toString()));
        m_home->makeFile(u"Downloads/report.zip"_s, "another");

        const Dictionaries outcomes = answer(u"PutBack"_s, {QStringList{record[u"id"_s].toString()}});

        QCOMPARE(outcomes.size(), 1);
        QCOMPARE(outcomes[0][u"outcome"_s].toString(), u"put-back"_s);
        QCOMPARE(outcomes[0][u"otherPlace"_s].toBool(), true);
        QFile back(outcomes[0][u"path"_s].toString());
        QVERIFY(back.open(QIODevice::ReadOnly));
        QCOMPARE(back.readAll(), QByteArray("the report"));
        QCOMPARE(answer(u"Recovered"_s), Dictionaries());
        QCOMPARE(answer(u"Items"_s), Dictionaries());
    }

    void changesAreSignalled()
    {
        startLapsa();
        Listener items;
        Listener records;
        QVERIFY(m_client->connect(busName(), objectPath(), interfaceName(), u"ItemsChanged"_s, &items, SLOT(hear())));
        QVERIFY(
            m_client->connect(busName(), objectPath(), interfaceName(), u"RecoveryChanged"_s, &records, SLOT(hear())));

        QCOMPARE(answer(u"Add"_s, {QStringList{uriOf(m_home->makeFile(u"a.txt"_s))}, 0}).size(), 1);

        QTRY_COMPARE_WITH_TIMEOUT(items.heard, 1, patience);
        QCOMPARE(records.heard, 0);
    }

    /// The bus starts Lapsa for it; the interface must be there before the list is.
    void aCallThatStartsLapsaIsAnswered()
    {
        const QString services = m_home->makeFolder(u"services"_s);
        m_home->makeFile(u"services/org.lapsa.Lapsa.service"_s,
                         "[D-BUS Service]\nName=org.lapsa.Lapsa\nExec=" + LapsaProcess::program().toUtf8() + "\n");
        const QString file = m_home->makeFile(u"a.txt"_s);
        m_client.reset();
        QDBusConnection::disconnectFromBus(clientName());
        m_bus.emplace(services);
        m_client.emplace(QDBusConnection::connectToBus(m_bus->address(), clientName()));

        const Dictionaries outcomes = answer(u"Add"_s, {QStringList{uriOf(file)}, 0});
        const QDBusReply<uint> process = m_client->interface()->servicePid(busName());

        QVERIFY(process.isValid());
        ::kill(pid_t(process.value()), SIGTERM);
        QCOMPARE(outcomes.value(0)[u"outcome"_s].toString(), u"added"_s);
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::Lapsa1Test)
#include "Lapsa1_test.moc"
