// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "LogCapture.h"
#include "SystemLog.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

class SystemLog_test final : public QObject
{
    Q_OBJECT

private slots:
    void oneCallIsOneLine_data();
    void oneCallIsOneLine();
    void whatNobodyTakesIsNotWaitedFor_data();
    void whatNobodyTakesIsNotWaitedFor();
    void aLongLineArrivesWhole();
};

void SystemLog_test::oneCallIsOneLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("plain") << u"Lapsa failed"_s << u"Lapsa failed"_s;
    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("percent signs mean nothing") << u"100% %s %n %1"_s << u"100% %s %n %1"_s;
    QTest::newRow("a line break") << u"a\nb"_s << u"a\\nb"_s;
    QTest::newRow("a tab and a carriage return") << u"a\tb\rc"_s << u"a\\tb\\x0dc"_s;
    QTest::newRow("a NUL") << u"a"_s + QChar(u'\0') + u"b"_s << u"a\\x00b"_s;
    QTest::newRow("escape and delete") << u"\u001b[31m\u007f\u009b"_s << u"\\x1b[31m\\x7f\\x9b"_s;
    QTest::newRow("line separators") << u"a\u2028b\u2029c"_s << u"a\\u{2028}b\\u{2029}c"_s;
    QTest::newRow("marks that turn the direction")
        << u"\u200e\u200f\u202a\u202e\u2066\u2069"_s << u"\\u{200E}\\u{200F}\\u{202A}\\u{202E}\\u{2066}\\u{2069}"_s;
    QTest::newRow("beyond ASCII and the basic plane") << u"ä€😀"_s << u"ä€😀"_s;
    QTest::newRow("half a surrogate pair") << u"a"_s + QChar(0xD800) + u"b"_s << u"a?b"_s;
}

void SystemLog_test::oneCallIsOneLine()
{
    QFETCH(QString, text);
    QFETCH(QString, line);

    QStringList written;
    {
        const LogCapture log;
        systemLog(text);
        written = log.lines();
    }

    QCOMPARE(written, QStringList{line});
}

void SystemLog_test::whatNobodyTakesIsNotWaitedFor_data()
{
    QTest::addColumn<bool>("socket");
    QTest::newRow("a pipe") << false;
    QTest::newRow("a socket, as of the journal") << true;
}

void SystemLog_test::whatNobodyTakesIsNotWaitedFor()
{
    QFETCH(bool, socket);
    std::array<int, 2> ends{};
    QCOMPARE(socket ? ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) : ::pipe(ends.data()), 0);
    const int standardError = ::dup(STDERR_FILENO);
    ::dup2(ends[1], STDERR_FILENO);

    // More than either holds, of lines that it would take in part.
    for (int i = 0; i < 1000; ++i) {
        systemLog(QString(i % 2 == 0 ? 100 : 9000, u'x'));
    }

    const int flags = ::fcntl(STDERR_FILENO, F_GETFL);
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    ::close(ends[0]);
    ::close(ends[1]);
    QVERIFY((flags & O_NONBLOCK) == 0); // others share it
}

void SystemLog_test::aLongLineArrivesWhole()
{
    std::array<int, 2> ends{};
    QCOMPARE(::pipe(ends.data()), 0);
    const int standardError = ::dup(STDERR_FILENO);
    ::dup2(ends[1], STDERR_FILENO);

    systemLog(QString(20'000, u'x'));

    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    ::close(ends[1]);
    QFile reader;
    QVERIFY(reader.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    QCOMPARE(reader.readAll(), QByteArray(20'000, 'x') + '\n');
}

QTEST_GUILESS_MAIN(SystemLog_test)
#include "SystemLog_test.moc"
