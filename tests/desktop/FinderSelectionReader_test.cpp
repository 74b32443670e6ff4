// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FinderSelectionReader.h"
#include "LogCapture.h"
#include "RecordingDesktop.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <tuple>

using namespace Qt::StringLiterals;

namespace lapsa::test {

namespace {

using Paths = FileManagerSelection::Paths;

QList<QUrl> urlsOf(const FileManagerSelection::Answer& answer)
{
    PlayedSelection selection;
    selection.answer = answer;
    return FinderSelectionReader::selectedFileURLs(selection, [] { qFatal("it wants to stop"); });
}

} // namespace

class FinderSelectionReaderTest final : public QObject
{
    Q_OBJECT

private slots:

    void twoSelectedFilesComeInTheFileManagersOrder()
    {
        QCOMPARE(urlsOf(Paths{u"/home/b.txt"_s, u"/home/a.txt"_s}),
                 QList({QUrl::fromLocalFile(u"/home/b.txt"_s), QUrl::fromLocalFile(u"/home/a.txt"_s)}));
    }

    void aSingleTextIsOneFile()
    {
        QCOMPARE(urlsOf(u"/home/100 % #1.txt"_s), QList{QUrl::fromLocalFile(u"/home/100 % #1.txt"_s)});
    }

    void nothingSelectedIsNoFile() { QCOMPARE(urlsOf(FileManagerSelection::Nothing()), QList<QUrl>()); }

    void whatHasNoPathIsSkipped()
    {
        QCOMPARE(urlsOf(Paths{std::nullopt, u"/home/a.txt"_s, std::nullopt}),
                 QList{QUrl::fromLocalFile(u"/home/a.txt"_s)});
    }

    void aListInWhichNothingHasAPathIsNoFile() { QCOMPARE(urlsOf(Paths{std::nullopt}), QList<QUrl>()); }

    void aFailureIsNoFileAndOneLogLine()
    {
        const LogCapture log;

        QCOMPARE(urlsOf(FileManagerSelection::Failure{u"no answer in %d ms\nat all"_s}), QList<QUrl>());

        QCOMPARE(log.lines(), QStringList{u"Lapsa Finder selection error: no answer in %d ms\\nat all"_s});
    }

    void anAnswerThatIsAListWithoutEntriesEndsTheProcessAfterItHasSaved()
    {
        constexpr int saved = 42;
        std::array<int, 2> channel{};
        QCOMPARE(::pipe(channel.data()), 0);

        const pid_t child = ::fork();
        if (child == 0) {
            std::signal(SIGABRT, SIG_DFL); // no report of a crash that is meant
            PlayedSelection selection;
            selection.answer = Paths();
            std::ignore = FinderSelectionReader::selectedFileURLs(
                selection, [&] { std::ignore = ::write(channel[1], &saved, sizeof saved); });
            std::_Exit(EXIT_SUCCESS);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        int told = 0;
        const ssize_t length = ::read(channel[0], &told, sizeof told);

        QVERIFY(WIFSIGNALED(status));
        QCOMPARE(WTERMSIG(status), SIGABRT);
        QCOMPARE(length, ssize_t(sizeof told));
        QCOMPARE(told, saved);
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::FinderSelectionReaderTest)
#include "FinderSelectionReader_test.moc"
