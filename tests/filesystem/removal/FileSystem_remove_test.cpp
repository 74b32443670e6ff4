// SPDX-FileCopyrightText: The Lapsa authors
// SPDX-License-Identifier: MIT

#include "FileBatch.h"
#include "FileSystem.h"
#include "FileTree.h"
#include "Privileges.h"
#include "TemporaryHome.h"

#include <QFile>
#include <QTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <thread>
#include <tuple>

using namespace lapsa;
using namespace lapsa::test;
using namespace Qt::StringLiterals;

/// Removing for good.
class FileSystem_remove_test final : public QObject
{
    Q_OBJECT

private slots:

    void initTestCase() { std::ignore = PrivateMounts::available(); } // before the first temporary folder

    void init() { m_home = std::make_unique<TemporaryHome>(); }

    void cleanup() { m_home.reset(); }

    void everyKindOfEntryIsRemoved_data();
    void everyKindOfEntryIsRemoved();
    void whereALinkLeadsIsNeverTouched();
    void namesThatAreNoTextAreRemovedInsideAFolder();
    void aFolderDeeperThanAnyPathIsRemovedWithFewDescriptors();
    void whatIsNotThereCannotBeRemoved();
    void aPathThatNamesNothingIsRefused_data();
    void aPathThatNamesNothingIsRefused();
    void aTrailingSlashDoesNotFollowALink();
    void theRestGoesWhereOneFolderCannotBeEmptied();
    void aFolderThatHoldsAMountIsLeftWhole();
    void aPlantedLinkIsNeverFollowed();

private:
    [[nodiscard]] int remove(const QString& path) const;

    std::unique_ptr<TemporaryHome> m_home;
};

int FileSystem_remove_test::remove(const QString& path) const
{
    const Result<void> result = fileSystem::Batch({}).remove(path);
    return result ? 0 : result.error().code;
}

void FileSystem_remove_test::everyKindOfEntryIsRemoved_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("a file") << QByteArray("file");
    QTest::newRow("a file without any right") << QByteArray("locked");
    QTest::newRow("a name with a line break") << QByteArray("line\nbreak");
    QTest::newRow("a name with quotes, percent and backslash") << QByteArray("100% \"a\" 'b' \\ %s %n");
    QTest::newRow("a name of 255 bytes") << QByteArray(255, 'n');
    QTest::newRow("a name that starts with a byte order mark") << QByteArray("\xef\xbb\xbf mark");
    QTest::newRow("a dangling link") << QByteArray("dangling");
    QTest::newRow("a pipe") << QByteArray("pipe");
    QTest::newRow("an empty folder") << QByteArray("empty folder");
    QTest::newRow("a folder with content") << QByteArray("folder");
}

void FileSystem_remove_test::everyKindOfEntryIsRemoved()
{
    QFETCH(QByteArray, name);
    const QByteArray path = m_home->path(u"in/"_s).toUtf8() + name;
    m_home->makeFile(u"in/other"_s);
    if (name == "dangling") {
        QCOMPARE(::symlink("nowhere", path.constData()), 0);
    } else if (name == "pipe") {
        QCOMPARE(::mkfifo(path.constData(), 0600), 0);
    } else if (name.endsWith("folder")) {
        QCOMPARE(::mkdir(path.constData(), 0755), 0);
    } else {
        makeRawFile(path);
    }
    if (name == "folder") {
        m_home->makeFile(u"in/folder/a/b/c"_s);
        m_home->makeFile(u"in/folder/.hidden/d"_s);
    } else if (name == "locked") {
        QCOMPARE(::chmod(path.constData(), 0), 0);
    }

    QCOMPARE(remove(QString::fromUtf8(path)), 0);

    QCOMPARE(rawNames(m_home->path(u"in"_s)), QList<QByteArray>{"other"});
}

void FileSystem_remove_test::whereALinkLeadsIsNeverTouched()
{
    m_home->makeFile(u"outside/precious"_s);
    const QString folder = m_home->makeFolder(u"folder"_s);
    QVERIFY(QFile::link(m_home->path(u"outside"_s), folder + u"/to a folder"_s));
    QVERIFY(QFile::link(m_home->path(u"outside/precious"_s), folder + u"/to a file"_s));
    QVERIFY(QFile::link(u".."_s, folder + u"/up"_s));
    QVERIFY(QFile::link(m_home->path(u"outside"_s), m_home->path(u"link"_s)));
    const auto before = treeAt(m_home->path(u"outside"_s));

    QCOMPARE(remove(folder), 0);
    QCOMPARE(remove(m_home->path(u"link"_s)), 0);

    QCOMPARE(treeAt(m_home->path(u"outside"_s)), before);
    QCOMPARE(rawNames(m_home->path({})), QList<QByteArray>{"outside"});
}

void FileSystem_remove_test::namesThatAreNoTextAreRemovedInsideAFolder()
{
    const QByteArray folder = m_home->makeFolder(u"folder"_s).toUtf8();
    QCOMPARE(::mkdir((folder + "/\xff").constData(), 0755), 0);
    makeRawFile(folder + "/\xff/\xc3\x28");

    QCOMPARE(remove(QString::fromUtf8(folder)), 0);

    QVERIFY(rawNames(m_home->path({})).isEmpty());
}

void FileSystem_remove_test::aFolderDeeperThanAnyPathIsRemovedWithFewDescriptors()
{
    int folder = ::open(m_home->makeFolder(u"deep"_s).toUtf8().constData(), O_RDONLY | O_DIRECTORY);
    for (int level = 0; level < 1500; ++level) {
        const QByteArray name = "a folder with a longer name";
        QCOMPARE(::mkdirat(folder, name.constData(), 0755), 0);
        const int below = ::openat(folder, name.constData(), O_RDONLY | O_DIRECTORY);
        ::close(::openat(folder, "file", O_WRONLY | O_CREAT, 0644));
        ::close(folder);
        folder = below;
    }
    ::close(folder);
    rlimit before = {};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{.rlim_cur = 64, .rlim_max = before.rlim_max};
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &few), 0);

    const int error = remove(m_home->path(u"deep"_s));

    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(error, 0);
    QVERIFY(rawNames(m_home->path({})).isEmpty());
}

void FileSystem_remove_test::whatIsNotThereCannotBeRemoved()
{
    QCOMPARE(remove(m_home->path(u"nothing"_s)), ENOENT);
    QCOMPARE(remove(m_home->path(u"no folder/nothing"_s)), ENOENT);
}

void FileSystem_remove_test::aPathThatNamesNothingIsRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("empty") << QString();
    QTest::newRow("relative") << u"file"_s;
    QTest::newRow("a single dot at the end") << u"HOME/folder/."_s;
    QTest::newRow("two dots at the end") << u"HOME/folder/sub/.."_s;
    QTest::newRow("a dot and slashes at the end") << u"HOME/folder/.//"_s;
    QTest::newRow("with a NUL") << u"HOME/file"_s + QChar(u'\0') + u"more"_s;
    QTest::newRow("with half a surrogate pair") << u"HOME/"_s + QChar(0xD800);
}

void FileSystem_remove_test::aPathThatNamesNothingIsRefused()
{
    QFETCH(QString, path);
    m_home->makeFile(u"folder/sub/file"_s);
    m_home->makeFile(u"file"_s);
    m_home->makeFile(u"?"_s);
    const auto before = treeAt(m_home->path({}));

    QCOMPARE(remove(path.replace(u"HOME"_s, m_home->path(u"."_s).chopped(2))), EINVAL);

    QCOMPARE(treeAt(m_home->path({})), before);
}

void FileSystem_remove_test::aTrailingSlashDoesNotFollowALink()
{
    m_home->makeFile(u"outside/precious"_s);
    QVERIFY(QFile::link(m_home->path(u"outside"_s), m_home->path(u"link"_s)));

    QCOMPARE(remove(m_home->path(u"link//"_s)), 0);

    QCOMPARE(rawNames(m_home->path({})), QList<QByteArray>{"outside"});
    QCOMPARE(rawNames(m_home->path(u"outside"_s)), QList<QByteArray>{"precious"});
}

void FileSystem_remove_test::theRestGoesWhereOneFolderCannotBeEmptied()
{
    if (::geteuid() != 0) {
        QSKIP("acts as another user, which needs root");
    }
    m_home->makeFile(u"tree/locked/stays"_s);
    m_home->makeFile(u"tree/goes/file"_s);
    m_home->makeFolder(u"tree/empty without rights"_s);
    m_home->makeFile(u"tree/file"_s);
    for (const QString& path : {u"."_s, u"tree"_s, u"tree/locked"_s, u"tree/locked/stays"_s, u"tree/goes"_s,
                                u"tree/goes/file"_s, u"tree/empty without rights"_s, u"tree/file"_s}) {
        giveToOrdinaryUser(m_home->path(path));
    }
    QCOMPARE(::chmod(m_home->path(u"tree/locked"_s).toUtf8().constData(), 0500), 0);
    QCOMPARE(::chmod(m_home->path(u"tree/empty without rights"_s).toUtf8().constData(), 0), 0);

    const int error = asOrdinaryUser([&] { return remove(m_home->path(u"tree"_s)); });

    QCOMPARE(error, EACCES);
    QCOMPARE(rawNames(m_home->path(u"tree"_s)), QList<QByteArray>{"locked"});
    QCOMPARE(rawNames(m_home->path(u"tree/locked"_s)), QList<QByteArray>{"stays"});
}

void FileSystem_remove_test::aFolderThatHoldsAMountIsLeftWhole()
{
    if (!PrivateMounts::available()) {
        QSKIP("mounts a file system, which needs root");
    }
    PrivateMounts mounts;
    m_home->makeFile(u"folder/before"_s);
    mounts.mountTemporary(m_home->path(u"folder/a/disk with\nodd \\ name"_s));
    m_home->makeFile(u"folder/a/disk with\nodd \\ name/precious"_s);
    const auto before = treeAt(m_home->path(u"folder"_s));

    QCOMPARE(remove(m_home->path(u"folder"_s)), EPERM);

    QCOMPARE(treeAt(m_home->path(u"folder"_s)), before);
}

void FileSystem_remove_test::aPlantedLinkIsNeverFollowed()
{
    m_home->makeFile(u"outside/precious"_s);
    const QByteArray home = m_home->path(u"."_s).chopped(2).toUtf8();
    std::atomic<bool> stop = false;
    // Swaps a folder of the tree for a link out of it and back, as fast as it can.
    std::thread planter([&] {
        const QByteArray planted = home + "/tree/planted";
        const QByteArray aside = home + "/aside";
        while (!stop) {
            ::rename(planted.constData(), aside.constData());
            ::symlink((home + "/outside").constData(), planted.constData());
            ::unlink(planted.constData());
            ::rename(aside.constData(), planted.constData());
        }
    });

    for (int round = 0; round < 100; ++round) {
        m_home->makeFolder(u"tree"_s);
        ::mkdir((home + "/tree/planted").constData(), 0755);
        for (int i = 0; i < 5; ++i) {
            const QByteArray file = home + "/tree/planted/" + QByteArray::number(i);
            ::close(::open(file.constData(), O_WRONLY | O_CREAT, 0644));
        }
        std::ignore = remove(m_home->path(u"tree"_s)); // whether it gets done is the planter's choice
    }

    stop = true;
    planter.join();
    QVERIFY(fileSystem::exists(m_home->path(u"outside/precious"_s)));
}

QTEST_GUILESS_MAIN(FileSystem_remove_test)
#include "FileSystem_remove_test.moc"
