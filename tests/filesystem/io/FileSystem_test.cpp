// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileSystem.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

#include <cerrno>
#include <memory>
#include <optional>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Questions to the file system, folders, whole files.
class FileSystem_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void aFileUrlBecomesAPlainPath_data();
    void aFileUrlBecomesAPlainPath();
    void existenceAndKindFollowLinks_data();
    void existenceAndKindFollowLinks();
    void aPathIsInsideAFolderOnceLinksAreResolved_data();
    void aPathIsInsideAFolderOnceLinksAreResolved();
    void aFolderIsMadeWithAllAboveIt();
    void aFolderCannotBeMadeWhereSomethingElseIs_data();
    void aFolderCannotBeMadeWhereSomethingElseIs();
    void aWholeFileIsRead();
    void whatIsNoFileIsNotRead_data();
    void whatIsNoFileIsNotRead();

private:
    [[nodiscard]] QString inHome(QString path) const
    {
        return path.replace(u"HOME"_s, m_home->path(u"."_s).chopped(2));
    }

    std::unique_ptr<TemporaryHome> m_home;
};

void FileSystem_test::aFileUrlBecomesAPlainPath_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<std::optional<QString>>("path");
    const auto row = [](const char* name, const QByteArray& url, const std::optional<QString>& path) {
        QTest::newRow(name) << QUrl::fromEncoded(url) << path;
    };
    row("plain", "file:///a/b.txt", u"/a/b.txt"_s);
    row("on this host", "file://localhost/a", u"/a"_s);
    row("dots and slashes", "file:///a/./b//c/../d/", u"/a/b/d"_s);
    row("above the root", "file:///../../a", u"/a"_s);
    row("the root", "file:///", u"/"_s);
    row("percent, blank, question mark, number sign", "file:///100%25%20%3F%23", u"/100% ?#"_s);
    row("a percent sign that is part of the name", "file:///a%2520b", u"/a%20b"_s);
    row("a line break", "file:///a%0Ab", u"/a\nb"_s);
    row("beyond ASCII", "file:///%C3%A4", u"/ä"_s);
    row("bytes that are no UTF-8", "file:///a%FFb", std::nullopt);
    row("a NUL", "file:///a%00b", std::nullopt);
    const QByteArray machine = QSysInfo::machineHostName().toUtf8();
    row("on this machine by its name", "file://" + machine + "/a", u"/a"_s);
    row("on this machine in capitals", "file://" + machine.toUpper() + "/a", u"/a"_s);
    if (!machine.contains('.')) {
        row("on this machine with its domain", "file://" + machine + ".example.org/a", u"/a"_s);
    }
    row("a host that begins like this machine", "file://" + machine + "x/a", std::nullopt);
    row("another host", "file://elsewhere/a", std::nullopt);
    row("another scheme", "https://localhost/a", std::nullopt);
    row("relative", "file:a", std::nullopt);
    row("without scheme", "/a", std::nullopt);
    row("empty", "", std::nullopt);
    QTest::newRow("made from a path") << QUrl::fromLocalFile(u"/a%20/ä\n\\?#;"_s) << std::optional(u"/a%20/ä\n\\?#;"_s);
}

void FileSystem_test::aFileUrlBecomesAPlainPath()
{
    QFETCH(QUrl, url);
    QFETCH(std::optional<QString>, path);

    QCOMPARE(fileSystem::standardizedPath(url), path);
}

void FileSystem_test::existenceAndKindFollowLinks_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("exists");
    QTest::addColumn<bool>("isDirectory");
    QTest::newRow("a file") << u"HOME/file"_s << true << false;
    QTest::newRow("a folder") << u"HOME/folder"_s << true << true;
    QTest::newRow("a folder with a slash") << u"HOME/folder/"_s << true << true;
    QTest::newRow("a link to a file") << u"HOME/to file"_s << true << false;
    QTest::newRow("a link to a folder") << u"HOME/to folder"_s << true << true;
    QTest::newRow("a dangling link") << u"HOME/dangling"_s << false << false;
    QTest::newRow("nothing") << u"HOME/nothing"_s << false << false;
    QTest::newRow("a file as a folder") << u"HOME/file/x"_s << false << false;
    QTest::newRow("the root") << u"/"_s << true << true;
    QTest::newRow("an empty path") << QString() << false << false;
    QTest::newRow("a relative path") << u"."_s << false << false;
    QTest::newRow("half a surrogate pair") << u"HOME/"_s + QChar(0xDC00) << false << false;
    QTest::newRow("a NUL") << u"HOME/file"_s + QChar(u'\0') << false << false;
}

void FileSystem_test::existenceAndKindFollowLinks()
{
    QFETCH(QString, path);
    m_home->makeFile(u"file"_s);
    m_home->makeFile(u"?"_s); // what half a surrogate pair would be written as
    m_home->makeFolder(u"folder"_s);
    QVERIFY(QFile::link(u"file"_s, m_home->path(u"to file"_s)));
    QVERIFY(QFile::link(u"folder"_s, m_home->path(u"to folder"_s)));
    QVERIFY(QFile::link(u"nowhere"_s, m_home->path(u"dangling"_s)));

    const fileSystem::Status status = fileSystem::status(inHome(path));

    QTEST(status.exists, "exists");
    QTEST(status.isDirectory, "isDirectory");
    QTEST(fileSystem::exists(inHome(path)), "exists");
    QTEST(fileSystem::isDirectory(inHome(path)), "isDirectory");
}

void FileSystem_test::aPathIsInsideAFolderOnceLinksAreResolved_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("inside");
    QTest::newRow("below") << u"HOME/a/b/file"_s << u"HOME/a"_s << true;
    QTest::newRow("the folder itself") << u"HOME/a"_s << u"HOME/a"_s << true;
    QTest::newRow("a name that only starts alike") << u"HOME/ab"_s << u"HOME/a"_s << false;
    QTest::newRow("above") << u"HOME"_s << u"HOME/a"_s << false;
    QTest::newRow("through a link") << u"HOME/link/file"_s << u"HOME/a"_s << true;
    QTest::newRow("out by two dots") << u"HOME/a/../ab"_s << u"HOME/a"_s << false;
    QTest::newRow("everything in the root") << u"HOME/a"_s << u"/"_s << true;
    QTest::newRow("what is not there") << u"HOME/a/nothing"_s << u"HOME/a"_s << false;
    QTest::newRow("in what is not there") << u"HOME/a"_s << u"HOME/nothing"_s << false;
}

void FileSystem_test::aPathIsInsideAFolderOnceLinksAreResolved()
{
    QFETCH(QString, path);
    QFETCH(QString, folder);
    m_home->makeFile(u"a/b/file"_s);
    m_home->makeFolder(u"ab"_s);
    QVERIFY(QFile::link(u"a/b"_s, m_home->path(u"link"_s)));

    QTEST(fileSystem::isInside(inHome(path), inHome(folder)), "inside");
}

void FileSystem_test::aFolderIsMadeWithAllAboveIt()
{
    QVERIFY(fileSystem::createDirectory(m_home->path(u"a/b/c/"_s), fileSystem::Access::OwnerOnly));
    QVERIFY(fileSystem::createDirectory(m_home->path(u"a/b/c"_s), fileSystem::Access::Default));
    QVERIFY(QFile::link(u"a"_s, m_home->path(u"link"_s)));
    QVERIFY(fileSystem::createDirectory(m_home->path(u"link"_s), fileSystem::Access::Default));
    const mode_t before = ::umask(027);
    QVERIFY(fileSystem::createDirectory(m_home->path(u"open/b"_s), fileSystem::Access::Default));
    ::umask(before);

    const auto mode = [this](const QString& path) {
        struct stat status = {};
        return ::stat(m_home->path(path).toUtf8().constData(), &status) == 0 ? status.st_mode & 07777U : 0U;
    };
    QCOMPARE(mode(u"a"_s), 0700U);
    QCOMPARE(mode(u"a/b/c"_s), 0700U);
    QCOMPARE(mode(u"open"_s), 0750U);
    QCOMPARE(mode(u"open/b"_s), 0750U);
}

void FileSystem_test::aFolderCannotBeMadeWhereSomethingElseIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("code");
    QTest::newRow("a file") << u"HOME/file"_s << EEXIST;
    QTest::newRow("below a file") << u"HOME/file/folder"_s << ENOTDIR;
    QTest::newRow("a dangling link") << u"HOME/dangling"_s << EEXIST;
    QTest::newRow("an empty path") << QString() << EINVAL;
    QTest::newRow("a relative path") << u"folder"_s << EINVAL;
}

void FileSystem_test::aFolderCannotBeMadeWhereSomethingElseIs()
{
    QFETCH(QString, path);
    m_home->makeFile(u"file"_s);
    QVERIFY(QFile::link(u"nowhere"_s, m_home->path(u"dangling"_s)));

    const Result<void> made = fileSystem::createDirectory(inHome(path), fileSystem::Access::Default);

    QVERIFY(!made);
    QTEST(made.error().code, "code");
    QVERIFY(!made.error().description.isEmpty());
}

void FileSystem_test::aWholeFileIsRead()
{
    for (const qsizetype size : {0, 1, 16383, 16384, 1'000'000}) {
        const QByteArray content(size, 'x');
        const Result<QByteArray> read = fileSystem::read(m_home->makeFile(u"file %1"_s.arg(size), content));
        QVERIFY(read);
        QCOMPARE(read.value(), content);
    }
    // A file that says it is empty, and is not.
    const Result<QByteArray> mounts = fileSystem::read(u"/proc/self/mountinfo"_s);
    QVERIFY(mounts && mounts.value().endsWith('\n'));
}

void FileSystem_test::whatIsNoFileIsNotRead_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<int>("code");
    QTest::newRow("nothing") << u"HOME/nothing"_s << ENOENT;
    QTest::newRow("a folder") << u"HOME/folder"_s << EISDIR;
    QTest::newRow("a pipe that nobody writes to") << u"HOME/pipe"_s << EINVAL;
    QTest::newRow("a relative path") << u"file"_s << EINVAL;
}

void FileSystem_test::whatIsNoFileIsNotRead()
{
    QFETCH(QString, path);
    m_home->makeFolder(u"folder"_s);
    QCOMPARE(::mkfifo(m_home->path(u"pipe"_s).toUtf8().constData(), 0600), 0);

    const Result<QByteArray> read = fileSystem::read(inHome(path));

    QVERIFY(!read);
    QTEST(read.error().code, "code");
}

QTEST_GUILESS_MAIN(FileSystem_test)
#include "FileSystem_test.moc"
