// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaProcess.h"
#include "PseudoTerminal.h"
#include "SessionBus.h"
#include "TemporaryHome.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDateTime>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>
#include <QUrl>

#include <sys/prctl.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <optional>
#include <vector>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 30'000;

const QString busName = u"org.lapsa.Lapsa"_s;

QDBusMessage callOf(const QString& method, const QVariantList& arguments)
{
    auto message =
        QDBusMessage::createMethodCall(busName, u"/org/lapsa/Lapsa"_s, u"org.freedesktop.Application"_s, method);
    message.setArguments(arguments);
    return message;
}

/// Holds the name of an application that is on its way out: nobody is behind it any more. Goes after so many calls.
class EndingPredecessor final : public QDBusVirtualObject
{
public:
    EndingPredecessor(const QDBusConnection& bus, int calls)
        : m_bus(bus)
        , m_calls(calls)
    {
        m_bus.registerVirtualObject(u"/org/lapsa"_s, this, QDBusConnection::SubPath);
        m_bus.registerService(busName);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (--m_calls == 0) {
            m_bus.unregisterService(busName);
        }
        return connection.send(message.createErrorReply(QDBusError::UnknownObject, u"gone"_s));
    }

private:
    QDBusConnection m_bus;
    int m_calls;
};

} // namespace

/// The program as a whole, from outside: arguments, one process a session, the end.
class LapsaAppTest final : public QObject
{
    Q_OBJECT

private slots:

    void init()
    {
        m_home.emplace();
        m_bus.emplace();
    }

    void cleanup()
    {
        m_bus.reset();
        m_home.reset();
    }

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

    void aSecondStartHandsItsFilesOver_data()
    {
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("name");

        const auto row = [](const char* what, const QString& name) { QTest::newRow(what) << name << name; };
        row("a relative path", u"other.pdf"_s);
        row("a newline in the name", u"two\nlines.txt"_s);
        row("a percent sign in the name", u"100%41.txt"_s);
        row("quotes in the name", u"\"it's\".txt"_s);
        row("a backslash in the name", u"back\\slash.txt"_s);
        row("a number sign and a question mark in the name", u"a#b?c.txt"_s);
        row("a name of 255 bytes", QString(255, u'x'));
        row("letters beyond ASCII", u"perch\u00E9 \u65E5\u672C \U0001F5C2.txt"_s);
        row("a leading dash", u"-rf"_s);
        row("what would be an option of the toolkit", u"-style"_s);
        row("what would be an option of other programs", u"--help"_s);
        row("a colon in the name", u"file:stem"_s);
        QTest::newRow("a path with dots") << u"./../w/dots.txt"_s << u"dots.txt"_s;
    }

    void aSecondStartHandsItsFilesOver()
    {
        QFETCH(const QString, argument);
        QFETCH(const QString, name);
        const QString folder = m_home->makeFolder(u"w"_s);
        const QString file = m_home->makeFile(u"w/"_s + name);
        LapsaProcess first;
        waitForName();

        LapsaProcess second({argument}, folder);

        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(second.standardError(), QByteArray());
        QCOMPARE(first.terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
        QCOMPARE(first.standardError(), QByteArray());
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

    void withoutABusASecondProcessIsTurnedAway()
    {
        const NoSessionBus noBus;
        const QString file = m_home->makeFile(u"first.txt"_s);
        LapsaProcess first({file});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);

        LapsaProcess second({m_home->makeFile(u"second.txt"_s)});

        QCOMPARE(second.exitCode(), 1);
        QCOMPARE(second.standardError().count('\n'), 1);
        QCOMPARE(first.terminate(), 0);
        QCOMPARE(first.standardError(), QByteArray());
        QCOMPARE(storedPaths(*m_home), QStringList{file});
    }

    void withoutABusTheNextOneTakesOverFromOneThatIsEnding()
    {
        const NoSessionBus noBus;
        const QString file = m_home->makeFile(u"first.txt"_s);
        const QString other = m_home->makeFile(u"second.txt"_s);
        LapsaProcess first({file});
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);

        first.send(SIGTERM);
        LapsaProcess second({other});

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList({file, other}), patience);
        QCOMPARE(second.terminate(), 0);
    }

    void filesHandedToOneThatIsEndingAreNotLost()
    {
        QStringList files;
        auto running = std::make_unique<LapsaProcess>();
        waitForName();
        for (int i = 0; i < 10; ++i) {
            files.push_back(m_home->makeFile(u"%1.txt"_s.arg(i)));

            running->send(SIGTERM);
            auto next = std::make_unique<LapsaProcess>(QStringList{files.constLast()});
            QCOMPARE(running->exitCode(), 0);

            if (!next->running()) {
                QCOMPARE(next->exitCode(), 0);
                next = std::make_unique<LapsaProcess>();
            }
            running = std::move(next);
            QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), files, patience);
        }
        QCOMPARE(running->terminate(), 0);
    }

    void aPredecessorMayTakeItsTimeToEnd()
    {
        constexpr int calls = 60;
        const QString name = u"predecessor"_s;
        const QString file = m_home->makeFile(u"report.zip"_s);
        const EndingPredecessor predecessor(QDBusConnection::connectToBus(m_bus->address(), name), calls);
        const auto disconnected = qScopeGuard([&name] { QDBusConnection::disconnectFromBus(name); });
        waitForName();

        LapsaProcess lapsa({file});

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(*m_home), QStringList{file}, patience);
        QCOMPARE(lapsa.terminate(), 0);
    }

    void twentyStartsAtOnceLeaveOneProcessAndLoseNoFile()
    {
        constexpr int count = 20;
        QStringList files;
        for (int i = 0; i < count; ++i) {
            files.push_back(m_home->makeFile(u"%1.txt"_s.arg(i, 2, 10, QChar(u'0'))));
        }

        std::vector<std::unique_ptr<LapsaProcess>> all;
        for (const QString& file : files) {
            all.push_back(std::make_unique<LapsaProcess>(QStringList{file}));
        }

        const auto sortedPaths = [this] {
            QStringList paths = storedPaths(*m_home);
            paths.sort();
            return paths;
        };
        QTRY_COMPARE_WITH_TIMEOUT(sortedPaths(), files, patience);
        const auto living = [&all] {
            return std::ranges::count_if(all, [](const auto& process) {
                QCoreApplication::processEvents();
                return process->running();
            });
        };
        QTRY_COMPARE_WITH_TIMEOUT(living(), 1, patience);
        for (const auto& process : all) {
            if (process->running()) {
                QCOMPARE(process->terminate(), 0);
            } else {
                QCOMPARE(process->exitCode(), 0);
            }
            QCOMPARE(process->standardError(), QByteArray());
        }
    }

    void callsOnTheBusOpenFilesAndNothingElse()
    {
        const QString file = m_home->makeFile(u"a b.txt"_s);
        LapsaProcess lapsa;
        waitForName();
        auto bus = QDBusConnection::connectToBus(m_bus->address(), u"caller"_s);
        const QStringList uris{u"https://example.org/a"_s,
                               file,
                               QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded()),
                               u"file:///%E9"_s,
                               u"file://elsewhere/tmp"_s,
                               u"trash:///x"_s};

        const QList<QDBusMessage> replies{
            bus.call(callOf(u"Activate"_s, {QVariantMap()})),
            bus.call(callOf(u"ActivateAction"_s, {u"nonsense"_s, QVariantList(), QVariantMap()})),
            bus.call(callOf(u"Open"_s, {QStringList(), QVariantMap()})),
            bus.call(callOf(u"Open"_s, {uris, QVariantMap()})),
        };

        for (const QDBusMessage& reply : replies) {
            QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        }
        QDBusConnection::disconnectFromBus(u"caller"_s);
        QCOMPARE(lapsa.terminate(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
        QCOMPARE(lapsa.standardError(), QByteArray());
    }

    void anActionOnTheBusIsCarriedOut()
    {
        const QString file = m_home->makeFile(u"a.txt"_s);
        LapsaProcess lapsa({file});
        waitForName();
        auto bus = QDBusConnection::connectToBus(m_bus->address(), u"caller"_s);

        bus.send(callOf(u"ActivateAction"_s, {u"quit"_s, QVariantList(), QVariantMap()}));
        QDBusConnection::disconnectFromBus(u"caller"_s);

        QCOMPARE(lapsa.exitCode(), 0);
        QCOMPARE(storedPaths(*m_home), QStringList{file});
        QCOMPARE(lapsa.standardError(), QByteArray());
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

private:
    static qint64 lifespanOf(const QJsonObject& item)
    {
        const auto time = [&item](const QString& key) {
            return QDateTime::fromString(item[key].toString(), Qt::ISODate).toSecsSinceEpoch();
        };
        return time(u"expiresAt"_s) - time(u"addedAt"_s);
    }

    void waitForName() const { QTRY_VERIFY_WITH_TIMEOUT(m_bus->hasOwner(busName), patience); }

    void makeSettings() const
    {
        LapsaProcess lapsa;
        waitForName();
        QCOMPARE(lapsa.terminate(), 0);
    }

    std::optional<TemporaryHome> m_home;
    std::optional<SessionBus> m_bus;
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppTest)
#include "LapsaApp_test.moc"
