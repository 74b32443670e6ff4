// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QSet>
#include <QTest>

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <optional>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// The entries of folders.
class FileSystem_listing_test final : public QObject
{
    Q_OBJECT

private slots:

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup();

    void visibleEntriesAreListedWithTheirKind();
    void everyNameThatIsTextIsListed();
    void theCreationDateIsThatOfTheEntryItself();
    void aFolderThatCannotBeListedIsAFailure();

private:
    std::unique_ptr<TemporaryHome> m_home;
};

void FileSystem_listing_test::cleanup()
{
    // Names that are no text are beyond the temporary folder's own cleaning.
    std::ignore = fileSystem::Batch({}).remove(m_home->path(u"in"_s));
    m_home.reset();
}

void FileSystem_listing_test::visibleEntriesAreListedWithTheirKind()
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

void FileSystem_listing_test::everyNameThatIsTextIsListed()
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

void FileSystem_listing_test::theCreationDateIsThatOfTheEntryItself()
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

void FileSystem_listing_test::aFolderThatCannotBeListedIsAFailure()
{
    const auto listed = [](const QString& path) { return fileSystem::forEachVisibleEntry(path, [](const auto&) {}); };

    QCOMPARE(listed(m_home->path(u"nothing"_s)).error().code, ENOENT);
    QCOMPARE(listed(m_home->makeFile(u"file"_s)).error().code, ENOTDIR);
    QCOMPARE(listed(u"relative"_s).error().code, EINVAL);
}

QTEST_GUILESS_MAIN(FileSystem_listing_test)
#include "FileSystem_listing_test.moc"
