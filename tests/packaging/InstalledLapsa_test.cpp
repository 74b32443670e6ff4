// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "InstalledTree.h"
#include "LapsaProcess.h"
#include "SessionBus.h"
#include "Settling.h"
#include "TemporaryHome.h"
#include "VirtualDisplay.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <QUrl>

#include <sys/types.h>

#include <csignal>
#include <optional>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

constexpr int patience = 60'000;
const QString busName = u"org.lapsa.Lapsa"_s;

/// A session in which one installation of Lapsa is known. What the bus has started ends with it.
class Session final
{
public:
    explicit Session(const InstalledTree& tree)
        : m_bus(tree.path(u"share/dbus-1/services"_s))
        , m_path(qgetenv("PATH"))
    {
        qputenv("PATH", tree.path(u"bin"_s).toUtf8() + ':' + m_path);
        qputenv("XDG_DATA_DIRS", tree.path(u"share"_s).toUtf8() + ":/usr/share");
    }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    ~Session()
    {
        if (const pid_t process = pid(); process > 0) {
            ::kill(process, SIGKILL);
        }
        qunsetenv("XDG_DATA_DIRS");
        qputenv("PATH", m_path);
    }

    [[nodiscard]] bool runs() const { return m_bus.hasOwner(busName); }

    /// The process of the Lapsa that runs; 0 without one.
    [[nodiscard]] pid_t pid() const
    {
        const QDBusReply<uint> reply =
            QDBusConnection::connectToBus(m_bus.address(), m_bus.address()).interface()->servicePid(busName);
        QDBusConnection::disconnectFromBus(m_bus.address());
        return reply.isValid() ? pid_t(reply.value()) : 0;
    }

    [[nodiscard]] QString program() const { return QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(pid())); }

private:
    SessionBus m_bus;
    QByteArray m_path;
};

Outcome callOpen(const QString& file)
{
    return outcomeOf(u"gdbus"_s,
                     {u"call"_s, u"--session"_s, u"--dest"_s, busName, u"--object-path"_s, u"/org/lapsa/Lapsa"_s,
                      u"--method"_s, u"org.freedesktop.Application.Open"_s,
                      u"['%1']"_s.arg(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded())), u"{}"_s});
}

Outcome startAtLogin(const InstalledTree& tree)
{
    QStringList command = QProcess::splitCommand(
        groupsOf(tree.path(u"etc/xdg/autostart/org.lapsa.Lapsa.desktop"_s))[u"Desktop Entry"_s][u"Exec"_s]);
    const QString program = command.takeFirst();
    return outcomeOf(program, command);
}

} // namespace

/// The ways in which a session starts an installed Lapsa, each gone for real.
class InstalledLapsaTest final : public QObject
{
    Q_OBJECT

private slots:

    void aCallOnTheBusStartsTheOneOfThatPrefix_data()
    {
        QTest::addColumn<QString>("prefix");

        QTest::newRow("plain") << u"prefix"_s;
        QTest::newRow("with a blank") << u"a prefix"_s;
        QTest::newRow("with letters that mean something elsewhere") << u"100% $HOME 'a' & \"b\""_s;
    }

    void aCallOnTheBusStartsTheOneOfThatPrefix()
    {
        QFETCH(const QString, prefix);
        const TemporaryHome home;
        const InstalledTree tree(prefix);
        const QString file = home.makeFile(u"100% #1.txt"_s);
        const Session session(tree);
        QVERIFY(!session.runs());

        const Outcome outcome = callOpen(file);

        QVERIFY2(outcome.code == 0, outcome.output.constData());
        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(home), QStringList{file}, patience);
        QCOMPARE(session.program(), tree.path(u"bin/lapsa"_s));
    }

    void theUnitNamesTheProgramOfThatPrefix()
    {
        const InstalledTree tree(u"50% off $now"_s);

        const QString line =
            groupsOf(tree.path(u"share/systemd/user/app-org.lapsa.Lapsa.service"_s))[u"Service"_s][u"ExecStart"_s];

        QCOMPARE(line, u'"' + tree.path(u"bin/lapsa"_s).replace(u'%', u"%%"_s).replace(u'$', u"$$"_s) + u'"');
    }

    void theDesktopEntryStartsItWithAFile()
    {
        const TemporaryHome home;
        const InstalledTree tree;
        const QString file = home.makeFile(u"report.zip"_s);
        const Session session(tree);

        // Again and again: newer versions of gio can be gone before their message is.
        constexpr int betweenLaunches = 5000;
        const bool listed = succeeds([&] {
            const Outcome outcome =
                outcomeOf(u"gio"_s, {u"launch"_s, tree.path(u"share/applications/org.lapsa.Lapsa.desktop"_s), file});
            return outcome.code == 0 &&
                   QTest::qWaitFor([&] { return storedPaths(home) == QStringList{file}; }, betweenLaunches);
        });

        QVERIFY(listed);
        QVERIFY(session.runs());
    }

    void anActionOfTheDesktopEntryReachesTheOneThatRuns()
    {
        const TemporaryHome home;
        const InstalledTree tree;
        const Session session(tree);
        QCOMPARE(startAtLogin(tree).code, 0);
        QVERIFY(session.runs());
        QStringList command = QProcess::splitCommand(
            groupsOf(tree.path(u"share/applications/org.lapsa.Lapsa.desktop"_s))[u"Desktop Action quit"_s][u"Exec"_s]);

        const QString program = command.takeFirst();
        const Outcome outcome = outcomeOf(program, command);

        QVERIFY2(outcome.code == 0, outcome.output.constData());
        QTRY_VERIFY_WITH_TIMEOUT(!session.runs(), patience);
    }

    void atLoginItStartsOnceAndOpensNoPanel()
    {
        const TemporaryHome home;
        const VirtualDisplay display;
        const InstalledTree tree;
        const Session session(tree);

        const Outcome first = startAtLogin(tree);
        // The splash comes and goes; the panel would stay.
        QVERIFY(succeeds([] { return VirtualDisplay::windowOfClass(u"lapsa"_s); }));
        const pid_t process = session.pid();
        const Outcome second = startAtLogin(tree);

        QVERIFY2(first.code == 0, first.output.constData());
        QVERIFY2(second.code == 0, second.output.constData());
        QVERIFY(process > 0);
        QCOMPARE(session.pid(), process);
        QVERIFY(comesTrue([] { return !VirtualDisplay::windowOfClass(u"lapsa"_s); }));
        QTRY_VERIFY_WITH_TIMEOUT(outcomeOf(tree.path(u"bin/lapsa"_s), {}).code == 0, patience);
        QVERIFY(succeeds([] { return VirtualDisplay::windowOfClass(u"lapsa"_s); }));
    }

    void anInstallationCanBeMoved()
    {
        const TemporaryHome home;
        const InstalledTree tree;
        const QString moved = home.path(u"moved"_s);
        QCOMPARE(outcomeOf(u"mv"_s, {tree.root(), moved}).code, 0);
        const QString file = home.makeFile(u"a.txt"_s);
        const Session session(tree);

        QProcess lapsa;
        lapsa.start(moved + u"/bin/lapsa"_s, {file});

        QTRY_COMPARE_WITH_TIMEOUT(storedPaths(home), QStringList{file}, patience);
        QVERIFY(session.runs());
        lapsa.terminate();
        QVERIFY(lapsa.waitForFinished(patience));
        QCOMPARE(lapsa.exitCode(), 0);
    }

    void itsWindowsAreThoseOfTheDesktopEntry()
    {
        const TemporaryHome home;
        const VirtualDisplay display;
        const InstalledTree tree;
        const Session session(tree);
        QCOMPARE(startAtLogin(tree).code, 0);

        const QString windowClass = groupsOf(
            tree.path(u"share/applications/org.lapsa.Lapsa.desktop"_s))[u"Desktop Entry"_s][u"StartupWMClass"_s];
        const auto shown = [] {
            return outcomeOf(
                       u"sh"_s,
                       {u"-c"_s, u"xprop -id $(xdotool search --onlyvisible --class lapsa | head -n 1) WM_CLASS"_s})
                .output;
        };

        QTRY_VERIFY2_WITH_TIMEOUT(shown().contains(", \"" + windowClass.toUtf8() + "\""), shown().constData(),
                                  patience);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::InstalledLapsaTest)
#include "InstalledLapsa_test.moc"
