// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileUri.h"
#include "LaunchArguments.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace lapsa::test {

class LaunchArgumentsTest final : public QObject
{
    Q_OBJECT

private slots:

    void anArgumentNamesAFile_data()
    {
        QTest::addColumn<QByteArray>("argument");
        QTest::addColumn<QString>("path");

        QTest::newRow("an absolute path") << QByteArray("/a/b") << u"/a/b"_s;
        QTest::newRow("a relative path") << QByteArray("b") << u"/cwd/b"_s;
        QTest::newRow("two leading slashes") << QByteArray("//a/b") << u"/a/b"_s;
        QTest::newRow("an option") << QByteArray("--help") << u"/cwd/--help"_s;
        QTest::newRow("a percent sign in a path") << QByteArray("/a%20b") << u"/a%20b"_s;
        QTest::newRow("a file URL") << QByteArray("file:///a%20b%0A") << u"/a b\n"_s;
        QTest::newRow("a file URL in capitals") << QByteArray("FILE:///a") << u"/a"_s;
        QTest::newRow("a file URL of this machine") << QByteArray("file://localhost/a") << u"/a"_s;
        QTest::newRow("a file URL without authority") << QByteArray("file:/a") << u"/a"_s;
        QTest::newRow("a file URL with slashes in front") << QByteArray("file:////a/b") << u"/a/b"_s;
        QTest::newRow("a file URL with an encoded slash in front") << QByteArray("file:///%2Fa/b") << u"/a/b"_s;
        QTest::newRow("a byte order mark in a name") << QByteArray("\xEF\xBB\xBF\x61") << u"/cwd/\uFEFFa"_s;
        QTest::newRow("a file URL with a question mark") << QByteArray("file:///a%3Fb%23c") << u"/a?b#c"_s;
        QTest::newRow("a name with a colon") << QByteArray("file:a") << u"/cwd/file:a"_s;
    }

    void anArgumentNamesAFile()
    {
        QFETCH(const QByteArray, argument);
        QFETCH(const QString, path);

        QCOMPARE(filesOfArguments({argument}, "/cwd"), QList{QUrl::fromLocalFile(path)});
    }

    void whatNamesNoFileIsSkippedAndTheOrderStays()
    {
        const QList<QByteArray> arguments{"/b", "", "caf\xE9", "file:///caf%E9", "file:///a%00b", "/a"};

        QCOMPARE(filesOfArguments(arguments, "/cwd"),
                 QList({QUrl::fromLocalFile(u"/b"_s), QUrl::fromLocalFile(u"/a"_s)}));
    }

    void whatNamesNothingIsToldAsItWasGiven()
    {
        const QTemporaryDir folder;
        const QByteArray path = folder.path().toUtf8();
        QVERIFY(QFile(folder.filePath(u"there"_s)).open(QIODevice::WriteOnly));
        const QList<QByteArray> arguments{"--help",   "there",      path + "/there", "file://" + path + "/there",
                                          "",         path + "/no", "caf\xE9",       "https://example.org/x",
                                          "sub/there"};

        QCOMPARE(argumentsThatNameNothing(arguments, path),
                 QStringList({u"--help"_s, u""_s, folder.filePath(u"no"_s), u"caf\uFFFD"_s, u"https://example.org/x"_s,
                              u"sub/there"_s}));
    }

    void withoutAWorkingFolderRelativePathsAreSkipped()
    {
        QCOMPARE(filesOfArguments({"a", "/b"}, {}), QList{QUrl::fromLocalFile(u"/b"_s)});
    }

    void aRelativePathInTheRootIsAFileOfThisMachine()
    {
        QCOMPARE(filesOfArguments({"home/ada"}, "/"), QList<QUrl>{QUrl::fromLocalFile(u"/home/ada"_s)});
    }

    void aFolderThatIsNotUtf8HidesItsRelativePaths() { QCOMPARE(filesOfArguments({"a"}, "/caf\xE9"), QList<QUrl>()); }

    void everyNameSurvivesTheWayThroughAUri_data()
    {
        QTest::addColumn<QString>("path");

        QTest::newRow("the root") << u"/"_s;
        QTest::newRow("reserved characters") << u"/a?b#c&d=e;f@g:h"_s;
        QTest::newRow("control characters") << u"/a\nb\tc\u001Bd"_s;
        QTest::newRow("letters in either normal form") << u"/\u00E9e\u0301"_s;
        QTest::newRow("what looks encoded") << u"/%41%2F%00"_s;
        QTest::newRow("beyond the basic plane") << u"/\U0001F5C2"_s;
    }

    void everyNameSurvivesTheWayThroughAUri()
    {
        QFETCH(const QString, path);

        QCOMPARE(pathOfFileUri(fileUri(path)), std::optional(path));
    }
};

} // namespace lapsa::test

QTEST_GUILESS_MAIN(lapsa::test::LaunchArgumentsTest)
#include "LaunchArguments_test.moc"
