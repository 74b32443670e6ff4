// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LapsaAppFixture.h"
#include "LapsaProcess.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>
#include <QUrl>

#include <algorithm>
#include <csignal>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

QDBusMessage callOf(const QString& method, const QVariantList& arguments)
{
    auto message = QDBusMessage::createMethodCall(u"org.lapsa.Lapsa"_s, u"/org/lapsa/Lapsa"_s,
                                                  u"org.freedesktop.Application"_s, method);
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
        m_bus.registerService(u"org.lapsa.Lapsa"_s);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
    {
        if (--m_calls == 0) {
            m_bus.unregisterService(u"org.lapsa.Lapsa"_s);
        }
        return connection.send(message.createErrorReply(QDBusError::UnknownObject, u"gone"_s));
    }

private:
    QDBusConnection m_bus;
    int m_calls;
};

/// A desktop portal that only notes what it is asked.
class AskedPortal final : public QDBusVirtualObject
{
public:
    explicit AskedPortal(QDBusConnection bus)
        : m_bus(std::move(bus))
    {
        m_bus.registerVirtualObject(u"/org/freedesktop/portal"_s, this, QDBusConnection::SubPath);
        m_bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/) override
    {
        calls.push_back(message.member() + u' ' + message.arguments().value(0).toString());
        return false;
    }

    QStringList calls;

private:
    QDBusConnection m_bus;
};

} // namespace

/// The program as a whole, from outside: one process per session.
class LapsaAppStartsTest final : public LapsaAppFixture
{
    Q_OBJECT

private slots:

    void init() { begin(); }

    void cleanup() { end(); }

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

    void thePortalIsToldFirstWhichProgramThisIs()
    {
        AskedPortal portal(QDBusConnection::connectToBus(m_bus->address(), u"portal"_s));
        const LapsaProcess lapsa;

        QTRY_VERIFY_WITH_TIMEOUT(portal.calls.size() > 1, 20'000);
        QDBusConnection::disconnectFromBus(u"portal"_s);

        QCOMPARE(portal.calls.first(), u"Register org.lapsa.Lapsa"_s);
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
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LapsaAppStartsTest)
#include "LapsaApp_starts_test.moc"
