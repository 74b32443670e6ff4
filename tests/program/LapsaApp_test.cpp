// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaAppFixture.h"
#include "LapsaProcess.h"
#include "PseudoTerminal.h"

#include <QDateTime>
#include <QFile>
#include <QJsonObject>
#include <QProcess>
#include <QTest>
#include <QUrl>

#include <sys/prctl.h>
#include <sys/types.h>
#include <unistd.h>

#include <csignal>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

qint64 lifespanOf(const QJsonObject& item)
{
    const auto time = [&item](const QString& key) {
        return QDateTime::fromString(item[key].toString(), Qt::ISODate).toSecsSinceEpoch();
    };
    return time(u"expiresAt"_s) - time(u"addedAt"_s);
}

} // namespace

/// The program as a whole, from outside: its arguments.
class LapsaAppTest final : public LapsaAppFixture
{
    Q_OBJECT

private slots:

    void init() { begin(); }

    void cleanup() { end(); }

    void aFileGivenAsArgumentIsStoredShortlyAfter()
    {
        const QString file = m_home->makeFile(u"report.zip"_s);

        LapsaProcess lapsa({file});

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void aFileOpenedGetsTheLifespanOfItsRule()
    {
        LapsaProcess lapsa({m_home->makeFile(u"report.zip"_s), m_home->makeFile(u"notes.txt"_s)});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home).size(), 2, patience);

        constexpr qint64 sevenDays = 7 * 24 * 60 * 60;
        const QJsonArray items = storedList(*m_home, u"state.json"_s);

        QCOMPARE(lifespanOf(items[0].toObject()), sevenDays);
        QVERIFY(lifespanOf(items[1].toObject()) < sevenDays);
        QCOMPARE(lapsa.terminate(), 0);
    }

    void aFileUrlIsAnArgumentToo()
    {
        const QString file = m_home->makeFile(u"100% #1?.txt"_s);

        LapsaProcess lapsa({QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded())});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);

        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
    }

    void argumentsThatNameNothingAreDropped()
    {
        const QString file = m_home->makeFile(u"there.txt"_s);

        LapsaProcess lapsa({u"gone.txt"_s, u""_s, file, u"https://example.org/x"_s, u"-platform"_s});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);

        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void onATerminalArgumentsThatNameNothingAreTold_data()
    {
        QTest::addColumn<bool>("running");

        QTest::newRow("by the first start") << false;
        QTest::newRow("by one that hands its files over") << true;
    }

    void onATerminalArgumentsThatNameNothingAreTold()
    {
        QFETCH(const bool, running);
        const QString file = m_home->makeFile(u"there.txt"_s);
        std::optional<LapsaProcess> first;
        if (running) {
            first.emplace();
            waitForName();
        }
        const PseudoTerminal terminal;
        QProcess start;
        start.setWorkingDirectory(m_home->path({}));
        start.setChildProcessModifier([&terminal] {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            ::dup2(terminal.device(), STDERR_FILENO);
        });

        start.start(LapsaProcess::program(), {u"--help"_s, u"there.txt"_s, u"mistyped\n.txt"_s});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
        if (!running) {
            ::kill(pid_t(start.processId()), SIGTERM);
        }

        QVERIFY(start.state() == QProcess::NotRunning || start.waitForFinished(patience));
        QCOMPARE(start.exitStatus(), QProcess::NormalExit);
        QCOMPARE(start.exitCode(), 0);
        QCOMPARE(terminal.written(), QByteArray("Lapsa found no file to add: \"--help\"\r\n"
                                                "Lapsa found no file to add: \"mistyped\\n.txt\"\r\n"));
    }

    void aNameThatIsNotUtf8IsSkipped()
    {
        const QString file = m_home->makeFile(u"there.txt"_s);
        LapsaProcess first;
        waitForName();
        QProcess shell;
        shell.start(u"sh"_s, {u"-c"_s,
                              u"cd \"$2\" && name=$(printf 'caf\\351') && : > \"$name\" && "
                              u"{ \"$1\" \"$name\" there.txt; code=$?; rm \"$name\"; exit $code; }"_s,
                              u"sh"_s, LapsaProcess::program(), m_home->path({})});
        QVERIFY(shell.waitForFinished(patience));

        QCOMPARE(shell.exitCode(), 0);
        QCOMPARE(first.terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
    }

    void theDataFolderHoldsTheThreeFilesAndRecoveryAndNothingElse()
    {
        LapsaProcess lapsa({m_home->makeFile(u"a.txt"_s)});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home).size(), 1, patience);

        QCOMPARE(lapsa.terminate(), 0);

        QCOMPARE(m_home->names(u".local/share/Lapsa"_s),
                 QStringList({u"Recovery"_s, u"recovery.json"_s, u"settings.json"_s, u"state.json"_s}));
        QCOMPARE(QFile::permissions(m_home->dataPath()) & 0x7077,
                 QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    void withoutADisplayFilesAreHandedOver()
    {
        const QString file = m_home->makeFile(u"a.txt"_s);
        LapsaProcess lapsa;
        waitForName();

        const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
        const QByteArray display = qgetenv("DISPLAY");
        qunsetenv("QT_QPA_PLATFORM");
        qunsetenv("DISPLAY");
        LapsaProcess second({file});
        const int code = second.exitCode();
        qputenv("QT_QPA_PLATFORM", platform);
        qputenv("DISPLAY", display);

        QCOMPARE(code, 0);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
    }

    void aDisplayThatIsNotThereGivesOneLineAndStatus1_data()
    {
        QTest::addColumn<QByteArray>("display");

        QTest::newRow("none") << QByteArray();
        QTest::newRow("one that cannot be reached") << QByteArray(":4711");
    }

    void aDisplayThatIsNotThereGivesOneLineAndStatus1()
    {
        QFETCH(const QByteArray, display);
        const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
        const QByteArray previous = qgetenv("DISPLAY");
        qunsetenv("QT_QPA_PLATFORM");
        qputenv("DISPLAY", display);
        LapsaProcess lapsa({m_home->makeFile(u"a.txt"_s)});
        const int code = lapsa.exitCode();
        qputenv("QT_QPA_PLATFORM", platform);
        qputenv("DISPLAY", previous);

        QCOMPARE(code, 1);
        const QByteArray errors = lapsa.standardError();
        QVERIFY2(errors.startsWith("Lapsa cannot"), errors.constData());
        QCOMPARE(errors.count('\n'), 1);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppTest)
#include "LapsaApp_test.moc"
