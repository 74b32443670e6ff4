// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QSet>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Questions to the file system, folders, whole files.
class FileSystem_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup();

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
    void visibleEntriesAreListedWithTheirKind();
    void everyNameThatIsTextIsListed();
    void theCreationDateIsThatOfTheEntryItself();
    void aFolderThatCannotBeListedIsAFailure();

private:
    [[nodiscard]] QString inHome(QString path) const
    {
        return path.replace(u"HOME"_s, m_home->path(u"."_s).chopped(2));
    }

    std::unique_ptr<TemporaryHome> m_home;
};

void FileSystem_test::cleanup()
{
    // Names that are no text are beyond the temporary folder's own cleaning.
    std::ignore = fileSystem::Batch({}).remove(m_home->path(u"in"_s));
    m_home.reset();
}

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

void FileSystem_test::visibleEntriesAreListedWithTheirKind()
{
    m_home->makeFile(u"in/file"_s);
    m_home->makeFile(u"in/.hidden"_s);
    m_home->makeFolder(u"in/folder"_s);
    QVERIFY(QFile::link(u"folder"_s, m_home->path(u"in/to folder"_s)));
    QVERIFY(QFile::link(u"nowhere"_s, m_home->path(u"in/dangling"_s)));
    QCOMPARE(::mkfifo(m_home->path(u"in/pipe"_s).toUtf8().constData(), 0600), 0);
    makeRawFile(m_home->path(u"in/"_s).toUtf8() + "no text \xff");

    QSet<QString> found;
    const Result<void> listed = fileSystem::forEachVisibleEntry(m_home->path(u"in"_s), [&](const auto& entry) {
        const fileSystem::Status status = entry.status();
        found.insert(entry.name() + (status.isDirectory ? u" folder"_s : status.exists ? u" file"_s : u" nothing"_s));
    });

    QVERIFY(listed);
    const QSet<QString> expected = {u"file file"_s, u"folder folder"_s, u"to folder folder"_s, u"dangling nothing"_s,
                                    u"pipe file"_s};
    QCOMPARE(found, expected);
}

void FileSystem_test::everyNameThatIsTextIsListed()
{
    const QByteArray folder = m_home->makeFolder(u"in"_s).toUtf8();
    const QSet<QString> expected = {u".hidden"_s, u"line\nbreak"_s, u"\uFEFFmark"_s, u"ä"_s, QString(255, u'n')};
    for (const QString& name : expected) {
        makeRawFile(folder + '/' + name.toUtf8());
    }
    makeRawFile(folder + "/\xff");
    makeRawFile(folder + "/\xed\xa0\x80"); // half a surrogate pair

    QSet<QString> found;
    QVERIFY(fileSystem::forEachName(m_home->path(u"in"_s), [&](const QString& name) { found.insert(name); }));

    QCOMPARE(found, expected);
}

void FileSystem_test::theCreationDateIsThatOfTheEntryItself()
{
    const auto now = [] {
        return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
    };
    m_home->makeFile(u"old"_s);
    m_home->makeFolder(u"in"_s);
    const TimePoint before = now() - std::chrono::milliseconds(20); // the file system's clock goes in steps
    QVERIFY(QFile::link(u"../old"_s, m_home->path(u"in/link"_s)));

    std::optional<TimePoint> created;
    QVERIFY(fileSystem::forEachVisibleEntry(m_home->path(u"in"_s),
                                            [&](const auto& entry) { created = entry.creationDate(); }));

    if (!created) {
        QSKIP("the temporary folder's file system keeps no creation dates");
    }
    QVERIFY(before <= *created && *created <= now());
}

void FileSystem_test::aFolderThatCannotBeListedIsAFailure()
{
    const auto listed = [](const QString& path) { return fileSystem::forEachVisibleEntry(path, [](const auto&) {}); };

    QCOMPARE(listed(m_home->path(u"nothing"_s)).error().code, ENOENT);
    QCOMPARE(listed(m_home->makeFile(u"file"_s)).error().code, ENOTDIR);
    QCOMPARE(listed(u"relative"_s).error().code, EINVAL);
}

QTEST_GUILESS_MAIN(FileSystem_test)
#include "FileSystem_test.moc"
